// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "profiles/profilecommands.h"
#include "tests/app/secondhand/operation.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr char table[] = "mProfilesTableView";
constexpr char gear[] = "mSettingsProfile";
constexpr char alert[] = "alert";
constexpr char chooser[] = "mApplicationChooser";
constexpr char filePanel[] = "mProfileFileBrowserPanel";
constexpr char savePanel[] = "mProfileSavePanel";
constexpr int autoSwitchColumn = 3;
constexpr int switchProfileAssignment = 17;
// The rest is typed at the end. It must not select a row by its number when the name is no longer being edited.
const QString typedName = u"Half a 3"_s;
constexpr int restLength = 1;
const QString importedFile = u"Imported.KestraProfile"_s;
const QString exportedFile = u"Exported.KestraProfile"_s;
const QByteArray otherContent = "another file";

void writeFile(const Scene &scene, const QString &name, const QByteArray &content)
{
    if (!PropertyList::writeFileAtomically(scene.file(name), content))
        qFatal("the test cannot write its file");
}

std::function<bool(const Scene &)> isUp(const char *dialog)
{
    return [dialog](const Scene &) { return Person::dialog(dialog) != nullptr; };
}

std::function<void(Scene &)> choosing(int tag)
{
    return [tag](Scene &scene) { Person::chooseFrom(scene, gear, tag); };
}

// Names

Operation nameEdit(const char *name, const std::function<void(Scene &)> &open, const QList<Command> &beginCommands = {})
{
    const auto begin = [open](Scene &scene) {
        open(scene);
        Person::typeName(scene, table, typedName.chopped(restLength));
    };
    const auto finish = [](Scene &scene) {
        Person::typeName(scene, table, typedName.right(restLength));
        Person::pressInName(scene, table, Qt::Key_Return);
    };
    const auto rename = [](Scene &scene) {
        QVariantMap record = scene.ledger.profileRecord();
        record.insert(SettingsKeys::profileName, typedName);
        scene.ledger.changeProfile(record);
    };
    const auto leave = [](Scene &scene) {
        Person::typeName(scene, table, typedName.right(restLength));
        Person::pressInName(scene, table, Qt::Key_Tab);
    };
    const auto cancel = [](Scene &scene) { Person::pressInName(scene, table, Qt::Key_Escape); };
    return {.name = name,
            .tab = profilesTab,
            .kind = OperationKind::nameEdit,
            .subject = Subject::profile,
            .begin = begin,
            .isOpen = [](const Scene &scene) { return Person::nameEditor(scene, table) != nullptr; },
            .beginCommands = beginCommands,
            .ends = {{"finished", finish, rename, {Command::updateProfile}},
                     {"left by Tab", leave, rename, {Command::updateProfile}},
                     {"cancelled", cancel, {}, {}}}};
}

void pressF2(Scene &scene)
{
    scene.find<TableView>(table)->setFocus();
    QTest::keyClick(scene.find<TableView>(table), Qt::Key_F2);
}

void add(Scene &scene)
{
    Person::click(scene, "mAddProfile");
    QVariantMap record = defaultProfile(scene);
    record.insert(SettingsKeys::profileName, u"Untitled Profile"_s);
    if (scene.ledger.apply(Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, record}}))
        scene.ledger.setProfile(scene.ledger.activeProfile());
}

// Alerts

Operation confirmation(const char *name, int tag, const std::function<void(Scene &)> &change,
                       const QList<Command> &commands)
{
    return {.name = name,
            .tab = profilesTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profile,
            .begin = choosing(tag),
            .isOpen = isUp(alert),
            .beginCommands = {},
            .ends = {{"finished", [](Scene &) { Person::clickIn(alert, "alertDefaultButton"); }, change, commands},
                     {"cancelled", [](Scene &) { Person::cancel(alert); }, {}, {}}}};
}

void deleteSubject(Scene &scene)
{
    Ledger &ledger = scene.ledger;
    const int row = ledger.profile();
    if (!ledger.apply(Command::deleteProfile, {{DaemonProtocol::profileId, row}}))
        return;
    const bool isSwitched = ledger.apply(Command::switchProfile, {{DaemonProtocol::profileId, std::max(row - 1, 0)}});
    // The window cleans up only with the document that the switch returns.
    if (isSwitched || ledger.obstructionOf(Command::switchProfile) == Obstruction::refusedWithDocument)
        ledger.dropAssignments(switchProfileAssignment, row, int(ledger.profiles().size()));
}

void restoreSubject(Scene &scene)
{
    QVariantMap record = defaultProfile(scene);
    record.insert(SettingsKeys::profileName, scene.ledger.profileRecord().value(SettingsKeys::profileName));
    scene.ledger.changeProfile(record);
}

// Applications

void withoutApplication(QVariantMap &document)
{
    QVariantList profiles = document.value(SettingsKeys::profiles).toList();
    QVariantMap profile = profiles.at(StartSettings::profile).toMap();
    profile.insert(SettingsKeys::appInfo, QVariantMap{{SettingsKeys::application, u""_s},
                                                      {SettingsKeys::executable, u""_s},
                                                      {SettingsKeys::identifier, u""_s},
                                                      {SettingsKeys::signature, u""_s}});
    profile.insert(SettingsKeys::autoSwitchOn, 0);
    profiles[StartSettings::profile] = profile;
    document.insert(SettingsKeys::profiles, profiles);
}

void tickAutoSwitch(Scene &scene)
{
    auto *list = scene.find<TableView>(table);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualRect(list->model()->index(scene.ledger.profile(), autoSwitchColumn)).center());
}

void setApplication(Scene &scene, const QString &name, const QString &executable, const QString &identifier,
                    const QVariant &isOn)
{
    QVariantMap appInfo = scene.ledger.profileRecord().value(SettingsKeys::appInfo).toMap();
    appInfo.insert(SettingsKeys::application, name);
    appInfo.insert(SettingsKeys::executable, executable);
    appInfo.insert(SettingsKeys::identifier, identifier);
    appInfo.insert(SettingsKeys::signature, u""_s);
    scene.ledger.changeProfile({{SettingsKeys::autoSwitchOn, isOn}, {SettingsKeys::appInfo, appInfo}});
}

/// In the list of applications, or in the file panel that its "Other…" opens.
Operation applicationChooser(const char *name, const char *dialog, const std::function<void(Scene &)> &open)
{
    const auto choose = [dialog](Scene &scene) {
        writeFile(scene, u"racer.desktop"_s, "[Desktop Entry]\nType=Application\nName=Racer\nExec=racer\n");
        if (dialog == filePanel)
            Person::chooseFile(filePanel, scene.file(u"racer.desktop"_s));
        else
            Person::chooseApplication(scene.file(u"racer.desktop"_s));
    };
    const auto begin = [dialog, open](Scene &scene) {
        open(scene);
        if (dialog == filePanel)
            Person::clickIn(chooser, "mOtherApplication");
    };
    const auto bind = [](Scene &scene) { setApplication(scene, u"Racer"_s, u"racer"_s, u"racer.desktop"_s, 1); };
    // Cancelling the chooser turns automatic switching off.
    const auto switchOff = [](Scene &scene) { scene.ledger.changeProfile({{SettingsKeys::autoSwitchOn, 0}}); };
    return {
        .name = name,
        .tab = profilesTab,
        .kind = OperationKind::sheet,
        .subject = Subject::profile,
        .begin = begin,
        .isOpen = isUp(dialog),
        .beginCommands = {},
        .ends = {{"finished", choose, bind, {Command::updateProfile}},
                 {"cancelled", [dialog](Scene &) { Person::cancel(dialog); }, switchOff, {Command::updateProfile}}}};
}

// Files

Operation importPanel()
{
    const auto choose = [](Scene &scene) {
        writeFile(scene, importedFile, *PropertyList::writeBinary(StartSettings::profileNamed(u"Imported"_s, 2)));
        Person::chooseFile(filePanel, scene.file(importedFile));
    };
    const auto addImported = [](Scene &scene) {
        const QVariantMap record = StartSettings::profileNamed(u"Imported"_s, 2);
        if (scene.ledger.apply(Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, record}}))
            scene.ledger.setProfile(scene.ledger.activeProfile());
    };
    return {.name = "import panel",
            .tab = profilesTab,
            .kind = OperationKind::sheet,
            .subject = Subject::none,
            .begin = choosing(ProfileCommands::importProfile),
            .isOpen = isUp(filePanel),
            .beginCommands = {},
            .ends = {{"finished", choose, addImported, {Command::addProfile}},
                     {"cancelled", [](Scene &) { Person::cancel(filePanel); }, {}, {}}}};
}

/// A file that was opened from outside.
Operation openedFile()
{
    const auto begin = [](Scene &scene) {
        writeFile(scene, importedFile, *PropertyList::writeBinary(StartSettings::profileNamed(u"Imported"_s, 2)));
        scene.openFile(scene.file(importedFile));
    };
    const auto addInactive = [](Scene &scene) {
        const QVariantMap record = StartSettings::profileNamed(u"Imported"_s, 2);
        scene.ledger.apply(Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, record},
                                                 {DaemonProtocol::keepsActiveProfile, true}});
    };
    return {.name = "opened file",
            .tab = profilesTab,
            .kind = OperationKind::question,
            .subject = Subject::none,
            .begin = begin,
            .isOpen = isUp(Person::fileQuestion),
            .beginCommands = {},
            .ends = {{"added",
                      [](Scene &) { Person::clickIn(Person::fileQuestion, "mFileAdd"); },
                      addInactive,
                      {Command::addProfile}},
                     {"cancelled", [](Scene &) { Person::cancel(Person::fileQuestion); }, {}, {}}}};
}

/// The file must contain the profile's record when the export was carried out, and `before` otherwise.
QString exported(const Scene &scene, bool isCarriedOut, const QByteArray &before)
{
    QFile file(scene.file(exportedFile));
    const QByteArray content = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    if (!isCarriedOut)
        return content == before ? QString() : u"a file was written"_s;
    const auto record = PropertyList::readPropertyListFile(scene.file(exportedFile));
    return record && differences(*record, scene.ledger.profileRecord()).isEmpty() ? QString()
                                                                                  : u"another file was written"_s;
}

Operation exportPanel()
{
    const auto choose = [](Scene &scene) { Person::chooseFile(savePanel, scene.file(u"Exported"_s)); };
    const auto outcome = [](const Scene &scene, bool isCarriedOut) { return exported(scene, isCarriedOut, {}); };
    return {.name = "export panel",
            .tab = profilesTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profile,
            .begin = choosing(ProfileCommands::exportProfile),
            .isOpen = isUp(savePanel),
            .beginCommands = {},
            .ends = {{"finished", choose, {}, {}}, {"cancelled", [](Scene &) { Person::cancel(savePanel); }, {}, {}}},
            .prepare = {},
            .outcome = outcome};
}

Operation replaceQuestion()
{
    const auto begin = [](Scene &scene) {
        writeFile(scene, exportedFile, otherContent);
        Person::chooseFrom(scene, gear, ProfileCommands::exportProfile);
        Person::chooseFile(savePanel, scene.file(u"Exported"_s));
    };
    const auto cancel = [](Scene &) {
        Person::cancel(alert);
        Person::cancel(savePanel);
    };
    const auto outcome = [](const Scene &scene, bool isCarriedOut) {
        return exported(scene, isCarriedOut, otherContent);
    };
    return {.name = "question whether to replace an exported file",
            .tab = profilesTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profile,
            .begin = begin,
            .isOpen = isUp(alert),
            .beginCommands = {},
            .ends = {{"finished", [](Scene &) { Person::clickIn(alert, "alertDefaultButton"); }, {}, {}},
                     {"cancelled", cancel, {}, {}}},
            .prepare = {},
            .outcome = outcome};
}

// Menus

Operation menu(const char *name, const std::function<void(Scene &)> &open)
{
    const auto choose = [](Scene &) { Person::chooseItem(localizedText("lkeyRemoveApplication")); };
    const auto unbind = [](Scene &scene) { setApplication(scene, u""_s, u""_s, u""_s, false); };
    return {.name = name,
            .tab = profilesTab,
            .kind = OperationKind::popUp,
            .subject = Subject::profile,
            .begin = open,
            .isOpen = [](const Scene &) { return Person::openMenu() != nullptr; },
            .beginCommands = {},
            .ends = {{"finished", choose, unbind, {Command::updateProfile}},
                     {"cancelled", [](Scene &) { Person::closeMenus(); }, {}, {}}}};
}

} // namespace

QVariantMap defaultProfile(const Scene &scene)
{
    return scene.hub().controller->defaultSettingsDict().value(SettingsKeys::profiles).toList().value(0).toMap();
}

std::vector<Operation> profileOperations()
{
    Operation autoSwitch = applicationChooser("chooser of the auto-switch box", chooser, tickAutoSwitch);
    autoSwitch.prepare = withoutApplication;
    return {
        nameEdit("renaming by the menu", choosing(ProfileCommands::rename)),
        nameEdit("renaming by F2", pressF2),
        nameEdit("naming an added one", add, {Command::addProfile}),
        confirmation("deleting", ProfileCommands::deleteProfile, deleteSubject,
                     {Command::deleteProfile, Command::switchProfile, Command::replaceAllProfiles}),
        confirmation("restoring", ProfileCommands::restoreDefault, restoreSubject, {Command::updateProfile}),
        applicationChooser("list of applications", chooser, choosing(ProfileCommands::assignApplication)),
        applicationChooser("panel for an application", filePanel, choosing(ProfileCommands::assignApplication)),
        autoSwitch,
        importPanel(),
        openedFile(),
        exportPanel(),
        replaceQuestion(),
        menu("gear menu", [](Scene &scene) { Person::openGearMenu(scene, gear); }),
        menu("context menu", [](Scene &scene) { Person::openContextMenu(scene, table); }),
    };
}
