// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "base/text.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keymapping.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"
#include "platform/popupbutton.h"
#include "tests/app/secondhand/operation.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QPushButton>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr char assignment[] = "mAssignFunction";
constexpr char sheet[] = "mSingleKeyWindow";
constexpr char newMacro[] = "mNewMacroSheet";
constexpr char chooser[] = "mApplicationChooser";
constexpr char panel[] = "mOpenPanel";
constexpr int selectedCode = 29; // Z
constexpr uint keyB = 5;

// The numbers of the assignments
constexpr int playMacro = 10;
constexpr int singleKey = 16;
constexpr int switchProfile = 17;
constexpr int disabled = 20;
constexpr int launchProgram = 46;

std::function<bool(const Scene &)> isUp(const char *dialog)
{
    return [dialog](const Scene &) { return Person::dialog(dialog) != nullptr; };
}

void pick(const Scene &scene, int position)
{
    scene.find<PopUpButton>(assignment)->itemAtIndex(position)->trigger();
}

std::function<void(Scene &)> assigning(int command, const QVariant &param1, const QVariant &param2)
{
    return [=](Scene &scene) { scene.ledger.assignKey(selectedCode, command, param1, param2); };
}

Operation singleKeySheet()
{
    const auto begin = [](Scene &scene) {
        pick(scene, KeyMappings::singleKeyPosition);
        scene.typeKey(keyB);
    };
    const auto finish = [](Scene &) {
        Person::clickIn(sheet, "mSingleKeyOK");
        Person::clickIn(sheet, "mSingleKeyCancel"); // OK is disabled until a key is captured
    };
    const auto change = [](Scene &scene) {
        if (!scene.ledger.isObstructed(Command::startSingleKeyRecording))
            scene.ledger.assignKey(selectedCode, singleKey, int(keyB), 0);
    };
    return {.name = "single-key sheet",
            .tab = keysTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profilesKey,
            .begin = begin,
            .isOpen = isUp(sheet),
            .beginCommands = {Command::startSingleKeyRecording},
            .ends = {{"finished", finish, change, {Command::updateProfile, Command::stopSingleKeyRecording}},
                     {"cancelled", [](Scene &) { Person::cancel(sheet); }, {}, {Command::stopSingleKeyRecording}}}};
}

/// Records B for a new macro.
Operation newMacroSheet()
{
    const auto begin = [](Scene &scene) {
        scene.hub().controller->keysController()->findChild<QAction *>(u"mMakeMacro"_s)->trigger();
        if (Person::dialog(newMacro))
            scene.typeKey(keyB);
        const bool isAdded = scene.ledger.apply(
            Command::addMacro, {{DaemonProtocol::macroContents, MacroFile::newRecord(scene.ledger.macros())}});
        scene.ledger.setMacro(isAdded ? int(scene.ledger.macros().size()) - 1 : -1);
    };
    const auto finish = [](Scene &scene) {
        if (auto *record = scene.find<QPushButton>("mNewMacroRecord");
            record && record->text().remove(u'&') == localizedText("lkeyStop"))
            Person::clickIn(newMacro, "mNewMacroRecord");
        Person::clickIn(newMacro, "mNewMacroAssign");
        Person::clickIn(newMacro, "mNewMacroCancel"); // Assign is disabled without events
    };
    const auto remove = [](Scene &scene) {
        scene.ledger.apply(Command::deleteMacro, {{DaemonProtocol::macroId, scene.ledger.macro()}});
    };
    const auto record = [](Scene &scene) {
        using namespace MacroRecord;
        scene.ledger.recordEvents(
            {eventRecord({.command = keyDown, .argument = keyB}), eventRecord({.command = keyUp, .argument = keyB})},
            false);
    };
    const auto change = [record, remove](Scene &scene) {
        const bool isRecorded = !scene.ledger.isObstructed(Command::startMacroRecording)
                                && !scene.ledger.isObstructed(Command::saveRecordedEvents) && !scene.hasRestarted();
        if (!isRecorded)
            return remove(scene);
        record(scene);
        scene.ledger.assignKey(selectedCode, playMacro, scene.ledger.macro(), 1);
    };
    return {.name = "new macro",
            .tab = keysTab,
            .kind = OperationKind::sheet,
            .subject = Subject::newMacro,
            .begin = begin,
            .isOpen = isUp(newMacro),
            .beginCommands = {Command::addMacro, Command::startMacroRecording},
            .ends = {{"finished",
                      finish,
                      change,
                      {Command::stopMacroRecording, Command::saveRecordedEvents, Command::updateProfile}},
                     {"cancelled",
                      [](Scene &) { Person::cancel(newMacro); },
                      remove,
                      {Command::stopMacroRecording, Command::deleteMacro}}},
            .whenEnded = record};
}

Operation programPanel()
{
    const auto path = [](const Scene &scene) { return scene.file(u"Notes.desktop"_s); };
    const auto choose = [path](Scene &scene) {
        if (!PropertyList::writeFileAtomically(path(scene), "[Desktop Entry]\nType=Application\nName=N\nExec=n\n"))
            qFatal("the test cannot write its file");
        Person::chooseFile(panel, path(scene));
    };
    const auto change = [path](Scene &scene) {
        scene.ledger.assignKey(selectedCode, launchProgram, QFileInfo(path(scene)).canonicalFilePath(), u""_s);
    };
    return {.name = "panel for a program",
            .tab = keysTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profilesKey,
            .begin =
                [](Scene &scene) {
                    pick(scene, KeyMappings::launchProgramPosition);
                    Person::clickIn(chooser, "mOtherApplication");
                },
            .isOpen = isUp(panel),
            .beginCommands = {},
            .ends = {{"finished", choose, change, {Command::updateProfile}},
                     {"cancelled", [](Scene &) { Person::cancel(panel); }, {}, {}}}};
}

Operation programList()
{
    const auto choose = [](Scene &scene) {
        const QString path = scene.file(u"Notes.desktop"_s);
        if (!PropertyList::writeFileAtomically(path, "[Desktop Entry]\nType=Application\nName=N\nExec=n\n"))
            qFatal("the test cannot write its file");
        Person::chooseApplication(path);
    };
    const auto change = [](Scene &scene) {
        scene.ledger.assignKey(selectedCode, launchProgram,
                               QFileInfo(scene.file(u"Notes.desktop"_s)).canonicalFilePath(), u""_s);
    };
    return {.name = "list of programs",
            .tab = keysTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profilesKey,
            .begin = [](Scene &scene) { pick(scene, KeyMappings::launchProgramPosition); },
            .isOpen = isUp(chooser),
            .beginCommands = {},
            .ends = {{"finished", choose, change, {Command::updateProfile}},
                     {"cancelled", [](Scene &) { Person::cancel(chooser); }, {}, {}}}};
}

Operation menu(const char *name, const std::function<void(Scene &)> &open, const QString &title,
               const std::function<void(Scene &)> &change)
{
    return {.name = name,
            .tab = keysTab,
            .kind = OperationKind::popUp,
            .subject = Subject::profilesKey,
            .begin = open,
            .isOpen = [](const Scene &) { return Person::openMenu() != nullptr; },
            .beginCommands = {},
            .ends = {{"finished", [title](Scene &) { Person::chooseItem(title); }, change, {Command::updateProfile}},
                     {"cancelled", [](Scene &) { Person::closeMenus(); }, {}, {}}}};
}

std::function<void(Scene &)> opening(const char *popUp)
{
    return [popUp](Scene &scene) { scene.find<PopUpButton>(popUp)->openMenu(); };
}

std::function<void(Scene &)> openingSubMenu(int position)
{
    return [position](Scene &scene) {
        auto *popUp = scene.find<PopUpButton>(assignment);
        popUp->openMenu();
        Person::chooseItem(popUp->itemAtIndex(position)->text());
    };
}

} // namespace

std::vector<Operation> keyOperations()
{
    const KeyMappings::RepeatMode &twice = KeyMappings::repeatModes()[3];
    return {
        singleKeySheet(),
        newMacroSheet(),
        programList(),
        programPanel(),
        menu("assignment pop-up", opening(assignment), localizedText("lkeyDisable"), assigning(disabled, 0, 0)),
        menu("sub-menu of macros", openingSubMenu(KeyMappings::macroPosition), u"Mount"_s, assigning(playMacro, 2, 1)),
        menu("sub-menu of profiles", openingSubMenu(KeyMappings::profilePosition), u"Work"_s,
             assigning(switchProfile, 2, 0)),
        menu("playback pop-up", opening("mMacroPlaybackPopUp"), localizedText(twice.labelKey),
             assigning(playMacro, StartSettings::macro, 2)),
    };
}
