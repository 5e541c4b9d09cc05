// SPDX-License-Identifier: MIT
// The complete path: the real window, the real daemon, its disk, and a second client.
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keybutton.h"
#include "platform/distributednotificationcenter.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QSlider>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

class EndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mDaemon.reset(); }
    void disablesAKeyPermanentlyByMouse();
    void disablesAKeyByKeyboardOnly();
    void followsAChangeMadeByAnotherClient();
    void showsTheProfileOfTheApplicationInFront();
    void followsPluggingOfTheKeyboard();
    void recoversWhenADaemonStartsWithTheKeyboard();
    void showsTheFirmwareVersion();
    void followsTheBrightnessKeys();
    void takesAMacroRecordedOnTheKeyboard();
    void ignoresDpiNotifications();
    void keepsAnsweredChangesWhenTheDaemonIsKilled();
    void changesAfterASuspensionAreNotUndone();

private:
    /// The trimmed output of kestractl; "exit code N: …" when that is not 0.
    QString kestractl(const QStringList &arguments);

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void EndToEndTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
}

QString EndToEndTest::kestractl(const QStringList &arguments)
{
    const KestractlResult result = runKestractl(arguments);
    return result.exitCode == 0 ? result.text().trimmed()
                                : u"exit code %1: "_s.arg(result.exitCode) + result.errorText();
}

void EndToEndTest::disablesAKeyPermanentlyByMouse()
{
    {
        const Hub hub;
        hub.controller->initializeDevice();
        QTest::mouseClick(hub.find<QWidget>("mA"), Qt::LeftButton);
        QCOMPARE(hub.controller->keysController()->selectedKey(), u"4"_s);
        auto *assignment = hub.find<PopUpButton>("mAssignFunction");
        QCOMPARE(assignment->indexOfSelectedItem(), 0);
        assignment->itemAtIndex(5)->trigger();
        QCOMPARE(assignment->indexOfSelectedItem(), 5);
        QCOMPARE(kestractl({u"key"_s, u"A"_s}), u"A: disabled"_s);
        QTest::mouseClick(hub.find<QWidget>("mS"), Qt::LeftButton);
        QVERIFY(hub.find<KeyButton>("mA")->isHighlighted());
    }
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    QCOMPARE(kestractl({u"key"_s, u"A"_s}), u"A: disabled"_s);
    const Hub again;
    again.controller->initializeDevice();
    QVERIFY(again.find<KeyButton>("mA")->isHighlighted());
    QTest::mouseClick(again.find<QWidget>("mA"), Qt::LeftButton);
    QCOMPARE(again.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void EndToEndTest::disablesAKeyByKeyboardOnly()
{
    const Hub hub;
    hub.controller->initializeDevice();
    hub.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(hub.window.get()));
    // The arrow keys lead from Escape, the key selected at the first start, down to the letter A.
    hub.controller->keysController()->currentButton()->setFocus();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Right})
        QTest::keyClick(QApplication::focusWidget(), key);
    QCOMPARE(hub.controller->keysController()->selectedKey(), u"4"_s);
    auto *assignment = hub.find<PopUpButton>("mAssignFunction");
    assignment->setFocus();
    QTest::keyClick(assignment, Qt::Key_Space);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QWidget *menu = QApplication::activePopupWidget();
    for (int step = 0; step < 5; ++step) // from the default key, the item that is selected, to the sixth assignment
        QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QTRY_COMPARE(assignment->indexOfSelectedItem(), 5);
    QCOMPARE(kestractl({u"key"_s, u"A"_s}), u"A: disabled"_s);
}

void EndToEndTest::followsAChangeMadeByAnotherClient()
{
    const Hub hub;
    hub.controller->initializeDevice();
    QTest::mouseClick(hub.find<QWidget>("mQ"), Qt::LeftButton);
    QCOMPARE(hub.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 0);
    QCOMPARE(kestractl({u"key"_s, u"Q"_s, u"disable"_s}), u"Q: disabled"_s);
    QTRY_COMPARE(hub.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
    QCOMPARE(kestractl({u"key"_s, u"Q"_s, u"default"_s}), u"Q: default key"_s);
    QTRY_COMPARE(hub.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 0);
}

void EndToEndTest::showsTheProfileOfTheApplicationInFront()
{
    const QVariantMap game{{SettingsKeys::profileName, u"Game"_s},
                           {SettingsKeys::appInfo, QVariantMap{{SettingsKeys::identifier, u"game"_s}}},
                           {SettingsKeys::autoSwitchOn, 1}};
    QVERIFY(mDaemon->request(DaemonProtocol::Command::addProfile, {{u"DeviceSettingsDictionary"_s, game}}));
    QVERIFY(mDaemon->request(DaemonProtocol::Command::switchProfile, {{u"ProfileID"_s, 0}}));
    const Hub hub;
    hub.controller->initializeDevice();
    const auto *table = hub.find<TableView>("mProfilesTableView");
    QCOMPARE(table->selectedRow(), 0);
    QCOMPARE(kestractl({u"focus"_s, u"game"_s}), QString());
    QTRY_COMPARE(table->selectedRow(), 1);
    QCOMPARE(kestractl({u"focus"_s, u"editor"_s}), QString());
    QTRY_COMPARE(table->selectedRow(), 0);
}

void EndToEndTest::followsPluggingOfTheKeyboard()
{
    const Hub hub;
    hub.controller->initializeDevice();
    auto *sheet = hub.find<Sheet>("mCommunicationAlertWindow");
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(sheet->isVisible());
    QVERIFY(!hub.find<QWidget>("mA")->isEnabled());
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_VERIFY(!sheet->isUp());
    QTRY_VERIFY(hub.find<QWidget>("mA")->isEnabled());
}

void EndToEndTest::recoversWhenADaemonStartsWithTheKeyboard()
{
    QCOMPARE(kestractl({u"key"_s, u"Q"_s, u"disable"_s}), u"Q: disabled"_s);
    mDaemon->kill();
    const Hub hub;
    hub.controller->initializeDevice(); // no reply comes, and it gives up
    QVERIFY(!hub.find<QWidget>("mQ")->isEnabled());
    QVERIFY(!hub.find<KeyButton>("mQ")->isHighlighted());

    QObject observer;
    QList<DistributedNotification> seen;
    DistributedNotificationCenter::defaultCenter().addObserver(
        &observer, DaemonProtocol::deviceAttached,
        [&](const DistributedNotification &notification) { seen += notification; });
    QVERIFY(mDaemon->start());
    QTRY_COMPARE(seen.size(), 1);
    QCOMPARE(seen.first().userInfo, (QVariantMap{{u"ProductID"_s, 271}}));
    QTRY_VERIFY(hub.find<QWidget>("mQ")->isEnabled());
    QVERIFY(hub.find<KeyButton>("mQ")->isHighlighted()); // the daemon's settings, not the factory's
    QTest::mouseClick(hub.find<QWidget>("mQ"), Qt::LeftButton);
    QCOMPARE(hub.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void EndToEndTest::showsTheFirmwareVersion()
{
    const Hub hub(std::chrono::milliseconds(20));
    hub.controller->initializeDevice();
    const QString version = mDaemon->keyboardProperty(u"FirmwareVersion"_s).toString();
    QVERIFY(!version.isEmpty());
    QTRY_COMPARE(hub.find<QLabel>("mFirmwareVersion")->text(), version);
}

void EndToEndTest::followsTheBrightnessKeys()
{
    const Hub hub;
    hub.controller->initializeDevice();
    auto *slider = hub.find<QSlider>("mBrightnessValue");
    QCOMPARE(slider->value(), 4);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {12U, 122U}), QString());
    QTRY_COMPARE(slider->value(), 3);
    QCOMPARE(mDaemon->callKeyboard(u"PressBrightnessDown"_s), QString());
    QTRY_COMPARE(slider->value(), 2);
    // The window sent nothing back, and the tab shows the values of the keyboard.
    QCOMPARE(mDaemon->keyboardProperty(u"Brightness"_s).toInt(), 2);
    QCOMPARE(kestractl({u"light"_s}).section(u'\n', 3, 3), u"brightness: 2 (normal)"_s);
    // The next change builds on this value.
    slider->setValue(1);
    QCOMPARE(mDaemon->keyboardProperty(u"Brightness"_s).toInt(), 1);
}

void EndToEndTest::takesAMacroRecordedOnTheKeyboard()
{
    const Hub hub;
    hub.controller->initializeDevice();
    const int macros = hub.find<TableView>("mMacroTableView")->numberOfRows();
    QVERIFY(!hub.find<KeyButton>("mM1")->isHighlighted());
    QCOMPARE(mDaemon->callKeyboard(u"PressMacroKey"_s), QString());
    QCOMPARE(mDaemon->keyboardProperty(u"OnTheFly"_s).toString(), u"recording"_s);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, 4U}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7U, 4U}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"PressMacroKey"_s), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, 106U}), QString());
    QTRY_COMPARE(hub.find<TableView>("mMacroTableView")->numberOfRows(), macros + 1);
    QTRY_VERIFY(hub.find<KeyButton>("mM1")->isHighlighted());
    const QVariantMap macro = hub.controller->macrosArray().last().toMap();
    QCOMPARE(macro.value(SettingsKeys::macroName), QVariant(u"On the fly"_s));
    QCOMPARE(kestractl({u"key"_s, u"M1"_s}), u"M1: macro On the fly, once"_s);
}

void EndToEndTest::ignoresDpiNotifications()
{
    const Hub hub;
    hub.controller->initializeDevice();
    const QVariantList profiles = hub.controller->profilesArray();
    DistributedNotificationCenter::defaultCenter().post(QString(DaemonProtocol::dpiUpdated), {{u"DPI"_s, 800}});
    // Both come from one sender, in order. Once the second is handled, the first is too.
    DistributedNotificationCenter::defaultCenter().post(QString(DaemonProtocol::illuminationUpdated),
                                                        {{SettingsKeys::brightnessKbNormal, 1}});
    QTRY_COMPARE(hub.find<QSlider>("mBrightnessValue")->value(), 1);
    QCOMPARE(hub.controller->profilesArray(), profiles);
    QVERIFY(hub.find<QWidget>("mA")->isEnabled());
}

void EndToEndTest::keepsAnsweredChangesWhenTheDaemonIsKilled()
{
    const Hub hub;
    hub.controller->initializeDevice();
    auto *assignment = hub.find<PopUpButton>("mAssignFunction");
    QTest::mouseClick(hub.find<QWidget>("mZ"), Qt::LeftButton);
    for (int round = 0; round < 5; ++round) {
        const int position = round % 2 ? 0 : 5;
        assignment->itemAtIndex(position)->trigger();
        QCOMPARE(assignment->indexOfSelectedItem(), position);
        mDaemon->kill();
        QVERIFY(mDaemon->start());
        hub.controller->loadLatestSettings();
        hub.controller->setProperties();
        hub.controller->updateUISettings();
        QCOMPARE(assignment->indexOfSelectedItem(), position);
    }
}

// The window stops waiting for a suspended daemon. It must not take a late reply of that daemon for the answer to its
// next request. It must show the outcome of the first one.
void EndToEndTest::changesAfterASuspensionAreNotUndone()
{
    const Hub hub;
    hub.controller->initializeDevice();
    auto *assignment = hub.find<PopUpButton>("mAssignFunction");
    const auto disable = [&](const char *key) {
        QTest::mouseClick(hub.find<QWidget>(key), Qt::LeftButton);
        assignment->itemAtIndex(5)->trigger();
    };
    setReplyPollInterval(std::chrono::milliseconds(1));
    mDaemon->stop();
    disable("mA");
    mDaemon->resume();
    setReplyPollInterval(replyPollInterval);
    QTRY_COMPARE(kestractl({u"key"_s, u"A"_s}), u"A: disabled"_s);
    QTest::mouseClick(hub.find<QWidget>("mS"), Qt::LeftButton); // a selected key does not show its mapping
    const bool isShown = QTest::qWaitFor([&] { return hub.find<KeyButton>("mA")->isHighlighted(); });
    disable("mS");
    disable("mD");
    for (const QString &key : {u"A"_s, u"S"_s, u"D"_s})
        QCOMPARE(kestractl({u"key"_s, key}), key + u": disabled"_s);
    QVERIFY(isShown);
}

QTEST_MAIN(EndToEndTest)
#include "endtoendtest.moc"
