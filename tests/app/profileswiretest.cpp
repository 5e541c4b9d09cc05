// SPDX-License-Identifier: MIT
// The commands that each action in the profiles tab sends through the real hub, with their order and content: adding
// (5), updating (6), deleting (9), switching (10) and the commands that follow them.
#include "base/settingskeys.h"
#include "platform/filepanels.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "profiles/keyboardprofilescontroller.h"
#include "tests/app/hubfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QTest>

#include <mutex>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

/// The daemon's side of the four commands, as the tab sees it: a document that follows them.
class ProfileDocument
{
public:
    ProfileDocument(ScriptedDaemon &daemon, const QVariantMap &document) : mDocument(document)
    {
        for (const Command command :
             {Command::addProfile, Command::updateProfile, Command::deleteProfile, Command::switchProfile})
            daemon.setScript(command, [this](const ScriptedDaemon::Request &request) { return answer(request); });
        daemon.setDocument(document);
    }

    [[nodiscard]] QVariantMap document() const
    {
        const std::lock_guard lock(mMutex);
        return mDocument;
    }

private:
    std::vector<ScriptedDaemon::Reply> answer(const ScriptedDaemon::Request &request)
    {
        const std::lock_guard lock(mMutex);
        QVariantList profiles = mDocument.value(SettingsKeys::profiles).toList();
        const int id = request.dictionary.value(u"ProfileID"_s, -1).toInt();
        const QVariantMap settings = request.dictionary.value(u"DeviceSettingsDictionary"_s).toMap();
        int active = mDocument.value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::activeProfile).toInt();
        switch (Command(request.command)) {
        case Command::addProfile:
            profiles.append(settings);
            active = int(profiles.size()) - 1;
            break;
        case Command::updateProfile: {
            QVariantMap record = profiles.value(id).toMap();
            record.insert(settings);
            profiles[id] = record;
            break;
        }
        case Command::deleteProfile:
            profiles.removeAt(id);
            active = qMax(0, id <= active ? active - 1 : active);
            break;
        default: active = id; break;
        }
        mDocument.insert(SettingsKeys::profiles, profiles);
        mDocument = withActiveProfile(mDocument, active);
        return {{.data = ScriptedDaemon::encoded({{u"ReturnStatus"_s, 0}, {u"ReturnDictionary"_s, mDocument}})}};
    }

    mutable std::mutex mMutex;
    QVariantMap mDocument;
};

} // namespace

class ProfilesWireTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void selectingARowSwitches();
    void addingSendsOnlyTheRecord();
    void copyingSendsOnlyTheRecord();
    void importingSendsOnlyTheRecord();
    void renamingUpdatesTheRow();
    void boxesUpdateOneKey();
    void tickingAnotherRowSwitchesAndThenUpdates();
    void tickingWithoutAnApplicationSwitchesAndUpdatesOnlyAtTheAnswer();
    void bindingAndUnbindingSendOneUpdateEach();
    void restoringUpdatesWithAWholeRecord();
    void deletingSwitchesToThePreviousProfile_data();
    void deletingSwitchesToThePreviousProfile();

private:
    [[nodiscard]] KeyboardProfilesController *tab() const { return mHub->controller->profilesController(); }
    [[nodiscard]] TableView *table() const { return tab()->profilesTableView(); }
    void choose(int tag) { mHub->find<PulldownButton>("mSettingsProfile")->itemWithTag(tag)->trigger(); }
    void answerAlert() { mHub->find<Sheet>("alert")->findChild<QPushButton *>(u"alertDefaultButton"_s)->click(); }
    void tick(int row, int value)
    {
        tab()->tableViewSetObjectValueForTableColumnRow(table(), value, u"auto switch"_s, row);
    }
    [[nodiscard]] QVariantMap settings(std::size_t index) const
    {
        return mDaemon->requests().at(index).dictionary.value(u"DeviceSettingsDictionary"_s).toMap();
    }
    [[nodiscard]] int profileID(std::size_t index) const
    {
        return mDaemon->requests().at(index).dictionary.value(u"ProfileID"_s, -1).toInt();
    }
    void finish(QFileDialog *panel, const QString &path);

    HubResources mResources;
    std::unique_ptr<ScriptedDaemon> mDaemon;
    std::unique_ptr<ProfileDocument> mDocument;
    std::unique_ptr<Hub> mHub;
    QTemporaryDir mFolder;
};

void ProfilesWireTest::init()
{
    QVariantMap document = sampleDocument(); // the second profile is active
    QVariantList profiles = document.value(SettingsKeys::profiles).toList();
    QVariantMap third = profiles.first().toMap();
    third.insert(SettingsKeys::profileName, u"Third"_s);
    third.insert(SettingsKeys::appInfo, QVariantMap{{u"application"_s, u"Racer"_s}, {u"other"_s, 7}});
    profiles.append(third);
    document.insert(SettingsKeys::profiles, profiles);
    mDaemon = std::make_unique<ScriptedDaemon>(document);
    mDocument = std::make_unique<ProfileDocument>(*mDaemon, document);
    mHub = std::make_unique<Hub>();
    mHub->open(*mDaemon);
    mHub->controller->selectTabAtIndex(1);
    QCOMPARE(table()->selectedRow(), 1);
    mDaemon->forgetRequests();
}

void ProfilesWireTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
    mDocument.reset();
}

void ProfilesWireTest::finish(QFileDialog *panel, const QString &path)
{
    QVERIFY(panel && panel->isVisible());
    panel->setDirectory(mFolder.path());
    panel->selectFile(path);
    QMetaObject::invokeMethod(panel, "accept");
}

void ProfilesWireTest::selectingARowSwitches()
{
    table()->selectRow(2);
    QCOMPARE(mDaemon->commands(), std::vector<int>{10});
    QCOMPARE(profileID(0), 2);
    table()->selectRow(2);
    QCOMPARE(mDaemon->commands().size(), 1u);
    table()->selectRow(0);
    table()->selectRow(1);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{10, 10, 10}));
    QCOMPARE(profileID(1), 0);
    QCOMPARE(profileID(2), 1);
}

void ProfilesWireTest::addingSendsOnlyTheRecord()
{
    mHub->controller->selectTabAtIndex(1);
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    mHub->find<QPushButton>("mAddProfile")->click();
    QCOMPARE(mDaemon->commands(), std::vector<int>{5});
    QVariantMap expected = tab()->defaultProfileDict();
    expected.insert(SettingsKeys::profileName, u"Untitled Profile"_s);
    QCOMPARE(settings(0), expected);
    QCOMPARE(table()->selectedRow(), 3);
    QCOMPARE(table()->editedRow(), 3);
}

void ProfilesWireTest::copyingSendsOnlyTheRecord()
{
    QVariantMap expected = tab()->selectedProfile();
    choose(ProfileCommands::copy);
    QCOMPARE(mDaemon->commands(), std::vector<int>{5});
    expected.insert(SettingsKeys::profileName, u"Raid(2)"_s);
    QCOMPARE(settings(0), expected);
}

void ProfilesWireTest::importingSendsOnlyTheRecord()
{
    const QString file = writeFile(mFolder.filePath(u"some.KestraProfile"_s), "{ ProfileName = Raid; other = 1; }");
    choose(ProfileCommands::importProfile);
    finish(tab()->profileFileBrowserPanel(), file);
    QCOMPARE(mDaemon->commands(), std::vector<int>{5});
    QCOMPARE(settings(0), (QVariantMap{{u"ProfileName"_s, u"Raid(2)"_s}, {u"other"_s, u"1"_s}}));
}

void ProfilesWireTest::renamingUpdatesTheRow()
{
    QVariantMap expected = tab()->selectedProfile();
    tab()->tableViewSetObjectValueForTableColumnRow(table(), u"Third"_s, u"name"_s, 1);
    QCOMPARE(mDaemon->commands(), std::vector<int>{6});
    QCOMPARE(profileID(0), 1);
    expected.insert(SettingsKeys::profileName, u"Third(2)"_s);
    QCOMPARE(settings(0), expected);
    QCOMPARE(tab()->allProfilesArray(), mDocument->document().value(SettingsKeys::profiles).toList());
}

void ProfilesWireTest::boxesUpdateOneKey()
{
    auto *box = mHub->find<QCheckBox>("mEnableOnScreenDisplay");
    const int ticked = box->isChecked() ? 0 : 1;
    box->click();
    QCOMPARE(mDaemon->commands(), std::vector<int>{6});
    QCOMPARE(profileID(0), 1);
    QCOMPARE(settings(0), (QVariantMap{{u"ProfileOSDOn"_s, ticked}}));
    tick(1, 0);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{6, 6}));
    QCOMPARE(settings(1), (QVariantMap{{u"AutoSwitchOn"_s, 0}}));
}

void ProfilesWireTest::tickingAnotherRowSwitchesAndThenUpdates()
{
    tick(2, 1);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{10, 6}));
    QCOMPARE(profileID(0), 2);
    QCOMPARE(profileID(1), 2); // the switch has selected this row
    QCOMPARE(settings(1), (QVariantMap{{u"AutoSwitchOn"_s, 1}}));
}

void ProfilesWireTest::tickingWithoutAnApplicationSwitchesAndUpdatesOnlyAtTheAnswer()
{
    tick(0, 1);
    QCOMPARE(mDaemon->commands(), std::vector<int>{10});
    QCOMPARE(profileID(0), 0);
    tab()->applicationChooser()->reject();
    QCOMPARE(mDaemon->commands(), (std::vector<int>{10, 6}));
    QCOMPARE(profileID(1), 0);
    QCOMPARE(settings(1), (QVariantMap{{u"AutoSwitchOn"_s, 0}}));
}

void ProfilesWireTest::bindingAndUnbindingSendOneUpdateEach()
{
    table()->selectRow(2);
    mDaemon->forgetRequests();
    const QString entry =
        writeDesktopEntry(mFolder.filePath(u"editor.desktop"_s), "Name=Editor\nExec=ed %f\nStartupWMClass=Ed\n");
    choose(ProfileCommands::assignApplication);
    QVERIFY(chooseOtherApplication());
    finish(tab()->profileFileBrowserPanel(), entry);
    QCOMPARE(mDaemon->commands(), std::vector<int>{6});
    QCOMPARE(profileID(0), 2);
    QCOMPARE(settings(0), (QVariantMap{{u"AutoSwitchOn"_s, 1},
                                       {u"AppInfo"_s, QVariantMap{{u"application"_s, u"Editor"_s},
                                                                  {u"executable"_s, u"ed"_s},
                                                                  {u"identifier"_s, u"editor.desktop"_s},
                                                                  {u"signature"_s, u"Ed"_s},
                                                                  {u"other"_s, 7}}}}));
    choose(ProfileCommands::removeApplication);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{6, 6}));
    QCOMPARE(settings(1).value(u"AutoSwitchOn"_s).typeId(), int(QMetaType::Bool));
    QCOMPARE(settings(1), (QVariantMap{{u"AutoSwitchOn"_s, false},
                                       {u"AppInfo"_s, QVariantMap{{u"application"_s, u""_s},
                                                                  {u"executable"_s, u""_s},
                                                                  {u"identifier"_s, u""_s},
                                                                  {u"signature"_s, u""_s},
                                                                  {u"other"_s, 7}}}}));
}

void ProfilesWireTest::restoringUpdatesWithAWholeRecord()
{
    choose(ProfileCommands::restoreDefault);
    QVERIFY(mDaemon->commands().empty());
    answerAlert();
    QCOMPARE(mDaemon->commands(), std::vector<int>{6});
    QCOMPARE(profileID(0), 1);
    QVariantMap expected = tab()->defaultProfileDict();
    expected.insert(SettingsKeys::profileName, u"Raid"_s);
    QCOMPARE(settings(0), expected);
}

void ProfilesWireTest::deletingSwitchesToThePreviousProfile_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("switchedTo");
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("middle") << 1 << 0;
    QTest::newRow("last") << 2 << 1;
}

void ProfilesWireTest::deletingSwitchesToThePreviousProfile()
{
    QFETCH(int, row);
    QFETCH(int, switchedTo);
    table()->selectRow(row);
    mDaemon->forgetRequests();
    mHub->find<QPushButton>("mDeleteProfile")->click();
    QVERIFY(mDaemon->commands().empty());
    answerAlert();
    // The hub reads the document again, whether keys had to be repaired or not.
    QCOMPARE(mDaemon->commands(), (std::vector<int>{9, 10, 4}));
    QCOMPARE(profileID(0), row);
    QCOMPARE(profileID(1), switchedTo);
}

QTEST_MAIN(ProfilesWireTest)
#include "profileswiretest.moc"
