// SPDX-License-Identifier: MIT
// The status line of the real window with the real daemon: the state of keyboard, service, game mode and profile, and
// what happens without a message box. Each text is also the one that screen readers get.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "keys/keyboardkeyscontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"
#include "macros/macrorecord.h"
#include "platform/applicationchooser.h"
#include "platform/filepanels.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QAccessible>
#include <QAction>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int macrosTab = 2;
constexpr int launchPosition = 4;
constexpr uint keyA = 4;

// Commands that are not those of the profiles tab.
constexpr int importMacro = -1;
constexpr int launch = -2;

const QString keyboard = u"Keyboard: Quill Kestra (virtual), connected  ·  "_s;
const QString running = u"  ·  Service: running"_s;
const QString gameModeOff = u"  ·  Game mode: off"_s;
const QString usualState = keyboard + u"Profile: Default Profile, chosen by hand"_s + running + gameModeOff;

} // namespace

class StatusEndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsTheState();
    void showsTheGameMode();
    void showsTheApplicationOfTheProfile();
    void showsThatTheKeyboardIsGone();
    void showsThatTheKeyboardIsNotThereAtTheStart();
    void showsThatTheServiceIsGoneAndBack();
    void showsThatTheServiceIsSilent();
    void showsProblemsOfTheSettings();
    void reportsAnExportThatCannotBeWritten_data();
    void reportsAnExportThatCannotBeWritten();
    void reportsAFileOfAnotherKind_data();
    void reportsAFileOfAnotherKind();
    void reportsAFileThatCannotBeRead_data();
    void reportsAFileThatCannotBeRead();
    void reportsARefusal();
    void reportsAFullMacro();
    void reportGivesWayToTheState();
    void longTextDoesNotWidenTheWindow();

private:
    void open(StatusTimes times = {});
    void choose(const char *gear, int tag) const;
    /// Chooses a command, or `launch` or `importMacro`, and the file at `path` in its panel.
    void chooseFile(int command, const QString &path);
    [[nodiscard]] KeyboardProfilesController *profilesTab() const { return mHub->controller->profilesController(); }
    /// The text of the line, if a screen reader gets the same.
    [[nodiscard]] QString shown() const;

    HubResources mResources;
    QTemporaryDir mFolder;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void StatusEndToEndTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
}

void StatusEndToEndTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void StatusEndToEndTest::open(StatusTimes times)
{
    mHub = std::make_unique<Hub>(std::chrono::hours(1), times);
    mHub->controller->initializeDevice();
}

void StatusEndToEndTest::choose(const char *gear, int tag) const
{
    auto *button = mHub->find<PulldownButton>(gear);
    button->validateItems();
    button->itemWithTag(tag)->trigger();
}

QString StatusEndToEndTest::shown() const
{
    auto *line = mHub->find<StatusLine>("mStatusLine");
    const QAccessibleInterface *status = QAccessible::queryAccessibleInterface(line);
    return status && status->role() == QAccessible::StatusBar && status->text(QAccessible::Name) == line->text()
               ? line->text()
               : u"not accessible: "_s + line->text();
}

void StatusEndToEndTest::showsTheState()
{
    open();
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::showsTheGameMode()
{
    open();
    QTRY_COMPARE(shown(), usualState);
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    QTRY_COMPARE(shown(), QString(usualState).replace(u"Game mode: off"_s, u"Game mode: on"_s));
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::showsTheApplicationOfTheProfile()
{
    const auto profile = [](const QString &name, const QVariantMap &appInfo) {
        return QVariantMap{
            {SettingsKeys::profileName, name}, {SettingsKeys::appInfo, appInfo}, {SettingsKeys::autoSwitchOn, 1}};
    };
    for (const QVariantMap &record : {profile(u"Game"_s, {{SettingsKeys::identifier, u"game"_s}}),
                                      profile(u"Editor"_s, {{SettingsKeys::identifier, u"org.editor"_s},
                                                            {SettingsKeys::application, u"My Editor"_s}})})
        QVERIFY(mDaemon->request(Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, record}}));
    QVERIFY(mDaemon->request(Command::switchProfile, {{DaemonProtocol::profileId, 0}}));
    open();
    QTRY_COMPARE(shown(), usualState);
    const auto withProfile = [](const QString &words) { return keyboard + words + running + gameModeOff; };
    QCOMPARE(runKestractl({u"focus"_s, u"game"_s}).exitCode, 0);
    QTRY_COMPARE(shown(), withProfile(u"Profile: Game, because game is in front"_s));
    QCOMPARE(runKestractl({u"focus"_s, u"org.editor"_s}).exitCode, 0);
    QTRY_COMPARE(shown(), withProfile(u"Profile: Editor, because My Editor is in front"_s));
    // The user chooses the profile that is already active.
    QVERIFY(mDaemon->request(Command::switchProfile, {{DaemonProtocol::profileId, 2}}));
    QTRY_COMPARE(shown(), withProfile(u"Profile: Editor, chosen by hand"_s));
    QCOMPARE(runKestractl({u"focus"_s, u"game"_s}).exitCode, 0);
    QTRY_COMPARE(shown(), withProfile(u"Profile: Game, because game is in front"_s));
    QCOMPARE(runKestractl({u"focus"_s, u"unbound"_s}).exitCode, 0);
    QTRY_COMPARE(shown(), withProfile(u"Profile: Editor, chosen by hand"_s));
}

void StatusEndToEndTest::showsThatTheKeyboardIsGone()
{
    open();
    QTRY_COMPARE(shown(), usualState);
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_COMPARE(shown(), QString(usualState).replace(u"connected"_s, u"not connected"_s));
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::showsThatTheKeyboardIsNotThereAtTheStart()
{
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    open();
    // The window shows the factory settings, which are not those of a profile that is active.
    QTRY_COMPARE(shown(), u"Keyboard: Quill Kestra (virtual), not connected"_s + running);
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::showsThatTheServiceIsGoneAndBack()
{
    open();
    QTRY_COMPARE(shown(), usualState);
    mDaemon->kill();
    QTRY_COMPARE(shown(), u"Service: not running"_s);
    QVERIFY(mDaemon->start());
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::showsThatTheServiceIsSilent()
{
    open({.untilWaitIsShown = std::chrono::hours(1), .report = std::chrono::milliseconds(1)});
    QTRY_COMPARE(shown(), usualState);
    setReplyPollInterval(std::chrono::microseconds(100));
    mDaemon->stop();
    mHub->controller->updateProfileWithSettings({{SettingsKeys::profileOsdOn, 1}});
    QCOMPARE(shown(), u"The keyboard service did not respond. The change may be missing."_s);
    QTRY_COMPARE(shown(), u"Service: not responding"_s);
    setReplyPollInterval(replyPollInterval);
    mDaemon->resume();
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::showsProblemsOfTheSettings()
{
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    QVERIFY(mDaemon->request(Command::switchProfile, {{DaemonProtocol::profileId, 0}}));
    mDaemon->terminate();
    writeFile(path, "damage");
    QVERIFY(mDaemon->start());
    open();
    QTRY_VERIFY(shown().startsWith(u"Problem with the keyboard settings: "_s));
    QVERIFY2(shown().contains(u"settings.plist.damaged-"_s), qPrintable(shown()));
    // A later one, while the window is open.
    QVERIFY(mDaemon->request(Command::switchProfile, {{DaemonProtocol::profileId, 0}}));
    writeFile(path, "another program's");
    mHub->controller->updateProfileWithSettings({{SettingsKeys::profileName, u"Changed"_s}});
    QTRY_VERIFY(shown().contains(u"settings.plist.replaced-"_s));
}

void StatusEndToEndTest::reportsAnExportThatCannotBeWritten_data()
{
    QTest::addColumn<bool>("isMacro");
    QTest::newRow("profile") << false;
    QTest::newRow("macro") << true;
}

void StatusEndToEndTest::reportsAnExportThatCannotBeWritten()
{
    QFETCH(bool, isMacro);
    open();
    SavePanel *panel = nullptr;
    if (isMacro) {
        mHub->controller->selectTabAtIndex(macrosTab);
        mHub->find<QPushButton>("mAddMacro")->click();
        choose("mSettingsMacro", MacroCommands::exportMacro);
        panel = mHub->find<SavePanel>("mSavePanel");
    } else {
        choose("mSettingsProfile", ProfileCommands::exportProfile);
        panel = profilesTab()->profileSavePanel();
    }
    QVERIFY(panel);
    panel->setDirectory(mFolder.path());
    const QString path = panel->chosenPath();
    QVERIFY(QDir().mkpath(path + u"/in the way"_s));
    panel->QDialog::accept();
    QCOMPARE(shown(),
             u"The file “%1” could not be written: Filename refers to a directory."_s.arg(QFileInfo(path).fileName()));
    QVERIFY(!mHub->find<Sheet>("alert"));
}

void StatusEndToEndTest::reportsAFileOfAnotherKind_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("text");
    QTest::newRow("profile") << int(ProfileCommands::importProfile)
                             << u"The file “a.KestraProfile” is not a profile."_s;
    QTest::newRow("macro") << importMacro << u"The file “a.KestraMacro” is not a macro."_s;
    QTest::newRow("application") << int(ProfileCommands::assignApplication) << u"“a.desktop” is not an application."_s;
    QTest::newRow("program to launch") << launch << u"“a.desktop” is not an application."_s;
}

void StatusEndToEndTest::reportsAFileOfAnotherKind()
{
    QFETCH(int, command);
    QFETCH(QString, text);
    open();
    const QString path = mFolder.filePath(text.section(u"“"_s, 1).section(u"”"_s, 0, 0));
    writeFile(path, "nothing of the kind");
    chooseFile(command, path);
    QCOMPARE(shown(), text);
}

void StatusEndToEndTest::chooseFile(int command, const QString &path)
{
    OpenPanel *panel = nullptr;
    if (command == launch) {
        mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(launchPosition)->trigger();
        mHub->controller->keysController()->applicationChooser()->done(ApplicationChooser::otherReturn);
        panel = mHub->controller->keysController()->openPanel();
    } else if (command == importMacro) {
        mHub->controller->selectTabAtIndex(macrosTab);
        choose("mSettingsMacro", MacroCommands::importMacro);
        panel = mHub->find<OpenPanel>("mOpenPanel");
    } else {
        choose("mSettingsProfile", command);
        if (command == int(ProfileCommands::assignApplication))
            profilesTab()->applicationChooser()->done(ApplicationChooser::otherReturn);
        panel = profilesTab()->profileFileBrowserPanel();
    }
    QVERIFY(panel);
    panel->setDirectory(mFolder.path());
    panel->selectFile(path);
    panel->accept();
}

void StatusEndToEndTest::reportsAFileThatCannotBeRead_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("name");
    QTest::newRow("profile") << int(ProfileCommands::importProfile) << u"pipe.KestraProfile"_s;
    QTest::newRow("macro") << importMacro << u"pipe.KestraMacro"_s;
}

void StatusEndToEndTest::reportsAFileThatCannotBeRead()
{
    QFETCH(int, command);
    QFETCH(QString, name);
    open();
    const QString path = mFolder.filePath(name);
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    chooseFile(command, path);
    QCOMPARE(shown(), u"The file “%1” could not be read: Not a regular file."_s.arg(name));
}

void StatusEndToEndTest::reportsARefusal()
{
    open();
    QVERIFY(mDaemon->request(Command::readSettings)); // the factory settings have one profile
    mHub->controller->deleteProfileWithProfileID(0);
    QCOMPARE(shown(), u"The keyboard service has refused this: the last profile cannot be deleted."_s);
}

void StatusEndToEndTest::reportsAFullMacro()
{
    QVariantList events;
    for (int pair = 0; pair < MacroRecord::maximumEvents / 2; ++pair) {
        for (const int command : {MacroRecord::keyDown, MacroRecord::keyUp})
            events += MacroRecord::eventRecord({command, 1, MacroRecord::keyboardPage, keyA});
    }
    const QVariantMap full = MacroRecord::withEvents(
        {{SettingsKeys::macroName, u"Full"_s}, {SettingsKeys::delay, 10}, {SettingsKeys::sequence, QVariantMap()}},
        events);
    QVERIFY(mDaemon->request(Command::addMacro, {{DaemonProtocol::macroContents, full}}));
    open();
    mHub->controller->selectTabAtIndex(macrosTab);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    mHub->find<QPushButton>("mAddMacroDetails")->click();
    QTRY_COMPARE(shown(), usualState);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, keyA}), QString());
    QTRY_COMPARE(shown(), u"The macro “Full” is full. Further keys are not recorded."_s);
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7U, keyA}), QString());
}

void StatusEndToEndTest::reportGivesWayToTheState()
{
    open({.untilWaitIsShown = std::chrono::hours(1), .report = std::chrono::milliseconds(1)});
    QTRY_COMPARE(shown(), usualState);
    mHub->controller->deleteProfileWithProfileID(0);
    QVERIFY(shown() != usualState);
    QTRY_COMPARE(shown(), usualState);
}

void StatusEndToEndTest::longTextDoesNotWidenTheWindow()
{
    open();
    QTRY_COMPARE(shown(), usualState);
    mHub->window->resize(mHub->window->minimumSize());
    const QSize least = mHub->window->size();
    mHub->controller->updateProfileWithSettings({{SettingsKeys::profileName, QString(500, u'W')}});
    QTRY_VERIFY(shown().contains(u"WWWW"_s));
    QCoreApplication::processEvents();
    QCOMPARE(mHub->window->size(), least);
    const auto *line = mHub->find<StatusLine>("mStatusLine");
    QVERIFY(mHub->window->rect().contains(QRect(line->mapTo(mHub->window.get(), QPoint()), line->size())));
}

QTEST_MAIN(StatusEndToEndTest)
#include "statusendtoendtest.moc"
