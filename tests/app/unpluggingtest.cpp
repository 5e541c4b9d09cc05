// SPDX-License-Identifier: MIT
// The keyboard is unplugged and plugged in again in every state of the window. Nothing crashes. Meanwhile the controls
// are disabled, and open sheets can still be answered. Afterwards everything works as before.
#include "app/keyboardmaintenancecontroller.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "keys/keyboardkeyscontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"
#include "platform/colorwell.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/fulldocument.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include <array>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Command = DaemonProtocol::Command;

namespace {

enum Tab { keysTab, profilesTab, macrosTab, lightingTab, maintenanceTab };

/// The user's answer to open sheets while the keyboard is missing.
enum class Answer { none, yes, no };

struct State
{
    const char *name;
    int tab;
    void (*begin)(const Hub &hub); ///< null: only the tab
};

void chooseMacro(const Hub &hub, int tag)
{
    hub.find<PulldownButton>("mSettingsMacro")->itemWithTag(tag)->trigger();
}

void chooseProfile(const Hub &hub, int tag)
{
    hub.find<PulldownButton>("mSettingsProfile")->itemWithTag(tag)->trigger();
}

void editEvent(const Hub &hub, int row)
{
    hub.find<TableView>("mMacroDetailsTableView")->selectRow(row);
    hub.find<PulldownButton>("mSettingsMacroDetails")->itemWithTag(MacroCommands::edit)->trigger();
}

void typeName(const Hub &hub, const char *table)
{
    auto *editor = hub.find<TableView>(table)->findChild<QLineEdit *>(u"cellEditor"_s);
    QVERIFY(editor);
    QTest::keyClicks(editor, u"Half a na"_s);
}

void openGearMenu(const Hub &hub, const char *gear)
{
    // Like a click, but without the event loop that a tool button then runs.
    hub.find<PulldownButton>(gear)->menu()->popup(hub.window->mapToGlobal(QPoint(50, 50)));
}

const std::array states{
    State{"keys", keysTab, nullptr},
    State{"profiles", profilesTab, nullptr},
    State{"macros", macrosTab, nullptr},
    State{"lighting", lightingTab, nullptr},
    State{"maintenance", maintenanceTab, nullptr},
    State{"assignment pop-up", keysTab, [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->openMenu(); }},
    State{"sub-menu of macros", keysTab,
          [](const Hub &hub) {
              auto *popUp = hub.find<PopUpButton>("mAssignFunction");
              popUp->openMenu();
              QTest::keyClick(popUp->popUpMenu(), Qt::Key_Down);
              QTest::keyClick(popUp->popUpMenu(), Qt::Key_Down);
              QTest::keyClick(popUp->popUpMenu(), Qt::Key_Right);
          }},
    State{"single-key sheet", keysTab,
          [](const Hub &hub) {
              hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
              // OK is disabled until a key is captured.
              hub.controller->keysController()->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, 5}}});
          }},
    State{"panel for a program", keysTab,
          [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger(); }},
    State{"profile being renamed", profilesTab,
          [](const Hub &hub) {
              chooseProfile(hub, ProfileCommands::rename);
              typeName(hub, "mProfilesTableView");
          }},
    State{"profile just added", profilesTab, [](const Hub &hub) { hub.find<QPushButton>("mAddProfile")->click(); }},
    State{"restoring a profile", profilesTab,
          [](const Hub &hub) { chooseProfile(hub, ProfileCommands::restoreDefault); }},
    State{"deleting a profile", profilesTab,
          [](const Hub &hub) { chooseProfile(hub, ProfileCommands::deleteProfile); }},
    State{"panel for a profile file", profilesTab,
          [](const Hub &hub) { chooseProfile(hub, ProfileCommands::importProfile); }},
    State{"gear menu of profiles", profilesTab, [](const Hub &hub) { openGearMenu(hub, "mSettingsProfile"); }},
    State{"recording", macrosTab, [](const Hub &hub) { hub.find<QPushButton>("mRecordMacroDetails")->click(); }},
    State{"appending", macrosTab, [](const Hub &hub) { hub.find<QPushButton>("mAddMacroDetails")->click(); }},
    State{"macro being renamed", macrosTab,
          [](const Hub &hub) {
              chooseMacro(hub, MacroCommands::rename);
              typeName(hub, "mMacroTableView");
          }},
    State{"macro just added", macrosTab, [](const Hub &hub) { hub.find<QPushButton>("mAddMacro")->click(); }},
    State{"deleting a macro", macrosTab, [](const Hub &hub) { hub.find<QPushButton>("mDeleteMacro")->click(); }},
    State{"event sheet", macrosTab, [](const Hub &hub) { editEvent(hub, 0); }},
    State{"delay sheet", macrosTab, [](const Hub &hub) { editEvent(hub, 1); }},
    State{"panel to export a macro", macrosTab, [](const Hub &hub) { chooseMacro(hub, MacroCommands::exportMacro); }},
    State{"gear menu of events", macrosTab, [](const Hub &hub) { openGearMenu(hub, "mSettingsMacroDetails"); }},
    State{"restoring the lighting", lightingTab,
          [](const Hub &hub) { hub.find<QPushButton>("mRestoreSettings")->click(); }},
    State{"colour dialog", lightingTab, [](const Hub &hub) { hub.find<ColorWell>("mMainColor")->click(); }},
    State{"communication error", keysTab, [](const Hub &hub) { hub.controller->showErrorForErrorCode(0); }},
    State{"device-not-found sheet", keysTab, [](const Hub &hub) { hub.controller->showErrorDialog(); }},
    State{"firmware asked for", lightingTab, [](const Hub &hub) { hub.controller->setDriverVersions(); }},
};

// The controls that change something, by tab, except those that are disabled without a selection or a device.
const std::array everyControl{
    "mA",
    "mM1",
    "mAssignFunction",
    "mProfilesTableView",
    "mSettingsProfile",
    "mAddProfile",
    "mDeleteProfile",
    "mEnableOnScreenDisplay",
    "mMacroTableView",
    "mMacroDetailsTableView",
    "mAddMacro",
    "mDeleteMacro",
    "mSettingsMacro",
    "mRecordMacroDetails",
    "mAddMacroDetails",
    "mSettingsMacroDetails",
    "mMain",
    "mMainColor",
    "mBrightnessValue",
    "mLighting",
    "mRestoreSettings",
    "mEnableAddOnHighlight",
};

QStringList controlsThatAre(const Hub &hub, bool enabled)
{
    QStringList names;
    for (const char *name : everyControl) {
        if (hub.find<QWidget>(name)->isEnabled() == enabled)
            names += QString::fromLatin1(name);
    }
    if (hub.controller->maintenanceController()->view()->isEnabled() == enabled)
        names += u"maintenance tab"_s;
    return names;
}

void answerMenu(QMenu *menu, Answer answer)
{
    if (answer == Answer::yes) {
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    } else {
        menu->close();
    }
}

void answerDialog(QDialog *dialog, Answer answer)
{
    if (!qobject_cast<Sheet *>(dialog)) {
        if (answer == Answer::yes)
            dialog->accept();
        dialog->reject(); // a panel stays open while no file is chosen
        return;
    }
    QPushButton *ok = nullptr;
    QPushButton *cancel = nullptr;
    for (auto *button : dialog->findChildren<QPushButton *>()) {
        if (button->text().remove(u'&') == "OK"_L1)
            ok = button;
        else if (button->text().remove(u'&') == "Cancel"_L1)
            cancel = button;
    }
    QVERIFY(ok);
    (answer == Answer::no && cancel ? cancel : ok)->click();
}

/// Answers everything that is open, except the sheet that reports the missing keyboard.
void answerAll(const Hub &hub, Answer answer)
{
    for (const QPointer<QWidget> widget : QApplication::topLevelWidgets()) {
        if (!widget || !widget->isVisible() || widget->objectName() == "mCommunicationAlertWindow"_L1)
            continue;
        if (auto *menu = qobject_cast<QMenu *>(widget))
            answerMenu(menu, answer);
        else if (auto *dialog = qobject_cast<QDialog *>(widget))
            answerDialog(dialog, answer);
    }
    for (auto *editor : hub.window->findChildren<QLineEdit *>(u"cellEditor"_s))
        QTest::keyClick(editor, answer == Answer::yes ? Qt::Key_Return : Qt::Key_Escape);
    QCoreApplication::processEvents();
}

/// The open widgets above the window.
QStringList openWidgets()
{
    QStringList names;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && (qobject_cast<const QDialog *>(widget) || qobject_cast<const QMenu *>(widget)))
            names += widget->objectName();
    }
    return names;
}

QVariantMap startDocument()
{
    const QVariantMap device{{SettingsKeys::activeProfile, 1}, {SettingsKeys::profileOsdOn, 0}};
    return {{SettingsKeys::profiles,
             QVariantList{fullProfile(u"Desktop"_s), fullProfile(u"Raid night"_s), fullProfile(u"Work"_s)}},
            {SettingsKeys::macros, QVariantList{fullMacro(u"Burst"_s, 0, 12), fullMacro(u"Heal"_s, 1, 4)}},
            {SettingsKeys::deviceSettings, device}};
}

} // namespace

class UnpluggingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("HOME", QFile::encodeName(mHome.path())); } // start folder of panels
    void init();
    void cleanup();
    void removalIsHandledInEveryState_data();
    void removalIsHandledInEveryState();
    void removalIsHandledWhileTheRestoringSheetIsOpen();
    void removalIsHandledWhileACommandWaits_data();
    void removalIsHandledWhileACommandWaits();
    void quickChangesAreHandled();

private:
    void openWindow();
    QVariantMap kept()
    {
        return mDaemon->request(Command::readSettings)->values.value(DaemonProtocol::allDevSettings).toMap();
    }

    QTemporaryDir mHome;
    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void UnpluggingTest::init()
{
    for (const QString &exported : QDir(mHome.path()).entryList(QDir::Files))
        QVERIFY(QFile::remove(mHome.filePath(exported)));
    LatestReplySlot::shared().clear();
    setReplyPollInterval(replyPollInterval);
}

void UnpluggingTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void UnpluggingTest::openWindow()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->store(startDocument()));
    QVERIFY(mDaemon->start());
    mHub = std::make_unique<Hub>();
    mHub->controller->initializeDevice();
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    QCOMPARE(controlsThatAre(*mHub, false), QStringList());
}

void UnpluggingTest::removalIsHandledInEveryState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<Answer>("answer");
    const std::array answers{std::pair("left", Answer::none), std::pair("accepted", Answer::yes),
                             std::pair("dismissed", Answer::no)};
    for (size_t state = 0; state < states.size(); ++state) {
        for (const auto &[name, answer] : answers) {
            if (states[state].begin || answer == Answer::none)
                QTest::addRow("%s, %s", states[state].name, name) << int(state) << answer;
        }
    }
}

void UnpluggingTest::removalIsHandledInEveryState()
{
    QFETCH(int, state);
    QFETCH(Answer, answer);
    openWindow();
    const State &begun = states[size_t(state)];
    mHub->controller->selectTabAtIndex(begun.tab);
    if (begun.begin)
        begun.begin(*mHub);
    QCoreApplication::processEvents();
    auto *sheet = mHub->find<Sheet>("mCommunicationAlertWindow");

    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(!mHub->find<QWidget>("mA")->isEnabled());
    QVERIFY(sheet->isVisible());
    QCOMPARE(controlsThatAre(*mHub, true), QStringList());
    QVERIFY(!mHub->controller->macrosController()->isRecordingOrCapturing());
    QCOMPARE(mHub->find<QLabel>("mFirmwareVersion")->text(), u"-"_s);
    QVERIFY(!QApplication::activePopupWidget()); // the menu of a disabled control
    if (answer != Answer::none) {
        answerAll(*mHub, answer);
        QStringList enabled = controlsThatAre(*mHub, true);
        // Deliberate: the add button follows the number of profiles at every refresh, and the end of a deletion
        // enables the whole tab.
        enabled.removeOne(u"mAddProfile"_s);
        if (qstrcmp(begun.name, "deleting a profile") != 0 || answer == Answer::no)
            QCOMPARE(enabled, QStringList());
        QCOMPARE(openWidgets(), QStringList{sheet->objectName()});
    }

    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_VERIFY(mHub->find<QWidget>("mA")->isEnabled());
    QVERIFY(!sheet->isVisible());
    QVERIFY(!sheet->isUp());
    answerAll(*mHub, Answer::no);
    QCOMPARE(openWidgets(), QStringList());
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    QCOMPARE(controlsThatAre(*mHub, false), QStringList());
    // The window shows the daemon's document, which can be changed.
    QTRY_COMPARE(mHub->controller->profilesArray(), kept().value(SettingsKeys::profiles).toList());
    QCOMPARE(mHub->controller->macrosArray(), kept().value(SettingsKeys::macros).toList());
    mHub->find<QSlider>("mBrightnessValue")->setValue(1);
    QCOMPARE(mDaemon->keyboardProperty(u"Brightness"_s).toInt(), 1);
    QTest::mouseClick(mHub->find<QWidget>("mZ"), Qt::LeftButton);
    mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    QCOMPARE(mHub->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void UnpluggingTest::removalIsHandledWhileTheRestoringSheetIsOpen()
{
    openWindow();
    mHub->controller->showRestoringStateWindow();
    auto *restoring = mHub->find<Sheet>("mRestoringStateWindow");
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QVERIFY(restoring->isVisible());
    QCOMPARE(controlsThatAre(*mHub, true), QStringList());
    // The opening that follows the sheet finds no keyboard and closes the sheet.
    mHub->controller->initializeDevice();
    QVERIFY(!restoring->isUp());
    QVERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QCOMPARE(controlsThatAre(*mHub, true), QStringList());
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_VERIFY(mHub->find<QWidget>("mA")->isEnabled());
    QCOMPARE(openWidgets(), QStringList());
}

void UnpluggingTest::removalIsHandledWhileACommandWaits_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<bool>("isAnswered");
    using Operation = void (*)(KeyboardMainController &);
    QTest::addColumn<Operation>("operation");
    const auto add = [](const char *name, Command command, Operation operation) {
        QTest::addRow("%s, answered", name) << command << true << operation;
        QTest::addRow("%s, not answered", name) << command << false << operation;
    };
    add("profile changed", Command::updateProfile, [](KeyboardMainController &hub) {
        hub.updateProfileWithSettings({{u"BrightnessKBNormal"_s, 2}});
    });
    add("profile added", Command::addProfile, [](KeyboardMainController &hub) {
        hub.addNewProfileWithSettings({{u"ProfileName"_s, u"New"_s}});
    });
    add("profile deleted", Command::deleteProfile,
        [](KeyboardMainController &hub) { hub.deleteProfileWithProfileID(1); });
    add("profile switched", Command::switchProfile, [](KeyboardMainController &hub) { hub.switchProfileWithID(0); });
    add("macro added", Command::addMacro, [](KeyboardMainController &hub) {
        hub.addMacroWithSettings({{u"MacroName"_s, u"New"_s}});
    });
    add("recording begun", Command::startMacroRecording, [](KeyboardMainController &hub) {
        hub.selectTabAtIndex(macrosTab);
        hub.macrosController()->macroTableView()->selectRow(0);
        hub.macrosController()->clickRecordMacroDetails(nullptr);
    });
    add("settings read", Command::readSettings, [](KeyboardMainController &hub) {
        hub.removeAllEventsForMacroAtIndex(0); // its reply has no document
        (void)hub.reloadMacros();
    });
}

void UnpluggingTest::removalIsHandledWhileACommandWaits()
{
    QFETCH(Command, command);
    QFETCH(bool, isAnswered);
    using Operation = void (*)(KeyboardMainController &);
    QFETCH(Operation, operation);
    ScriptedDaemon daemon(sampleDocument());
    mHub = std::make_unique<Hub>();
    mHub->open(daemon);
    setReplyPollInterval(isAnswered ? 5ms : 500us);
    const QVariantList profiles = mHub->controller->profilesArray();
    const QByteArray answer = ScriptedDaemon::encoded(
        {{u"ReturnStatus"_s, 0}, {u"ReturnDictionary"_s, sampleDocument()}, {u"AllDevSettings"_s, sampleDocument()}});
    daemon.setScript(command, [&](const ScriptedDaemon::Request &) {
        daemon.postNotification(u"Device Removed 271"_s);
        return isAnswered ? std::vector<ScriptedDaemon::Reply>{{answer, 50ms}} : std::vector<ScriptedDaemon::Reply>();
    });
    operation(*mHub->controller);
    QCOMPARE(daemon.count(command), 1);
    QTRY_VERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QCOMPARE(controlsThatAre(*mHub, true), QStringList());
    QVERIFY(!mHub->controller->macrosController()->isRecordingOrCapturing());
    QCOMPARE(mHub->controller->profilesArray(), profiles);

    // The keyboard is plugged in again while the next command waits for a reply that never comes.
    setReplyPollInterval(500us);
    daemon.setScript(command, [&](const ScriptedDaemon::Request &) {
        daemon.postNotification(u"Device Attached 271"_s);
        return std::vector<ScriptedDaemon::Reply>();
    });
    daemon.setSilent(Command::readMacroLines);
    operation(*mHub->controller);
    daemon.setReply(Command::readSettings, {{u"ReturnStatus"_s, 0}, {u"AllDevSettings"_s, sampleDocument()}});
    QTRY_VERIFY(mHub->find<QWidget>("mA")->isEnabled());
    mHub->controller->checkMacroRecording();
    QVERIFY(!mHub->find<Sheet>("mCommunicationAlertWindow")->isUp());
    QCOMPARE(mHub->controller->profilesArray(), profiles);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    QCOMPARE(controlsThatAre(*mHub, false), QStringList());
    mHub.reset();
}

void UnpluggingTest::quickChangesAreHandled()
{
    openWindow();
    const auto plug = [this](int times) {
        for (int i = 0; i < times; ++i) {
            for (const QString &method : {u"Remove"_s, u"Attach"_s})
                QCOMPARE(mDaemon->callKeyboard(method), QString());
        }
    };
    plug(20);
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_COMPARE(mHub->find<QLabel>("mFirmwareVersion")->text(), u"-"_s);
    const DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    const auto replyObservers = [&] {
        return center.observationCount(mHub->controller.get(), u"commandReplyNotification271"_s);
    };
    // One from the opening and one for each time the keyboard was plugged in: none was missed.
    QTRY_COMPARE(replyObservers(), 21);
    QTRY_VERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QCOMPARE(controlsThatAre(*mHub, true), QStringList());
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_COMPARE(replyObservers(), 22);
    QTRY_VERIFY(!mHub->find<Sheet>("mCommunicationAlertWindow")->isUp());
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    QCOMPARE(controlsThatAre(*mHub, false), QStringList());
}

QTEST_MAIN(UnpluggingTest)
#include "unpluggingtest.moc"
