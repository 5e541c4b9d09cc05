// SPDX-License-Identifier: MIT
// Single-key capture, game mode and the function-key notice, with notifications posted on a session bus.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "base/daemonprotocol.h"
#include "base/text.h"
#include "platform/distributednotificationcenter.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

namespace {

void postCapture(int key, int modifier)
{
    DistributedNotificationCenter::defaultCenter().post(
        DaemonProtocol::singleKeyEvent,
        {{DaemonProtocol::singleKey, key}, {DaemonProtocol::singleKeyModifier, modifier}});
}

// A tab with the key A selected and the capture sheet open.
std::unique_ptr<Tab> tabWithSheet(const QVariantMap &keyA = entry(20))
{
    auto tab = std::make_unique<Tab>(profile(u"P"_s, {{u"4"_s, keyA}}));
    tab->window.show();
    tab->key("mA")->click();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    return tab;
}

} // namespace

class KeysCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void observesBothNotificationsOnce();
    void openingStartsTheCapture();
    void sheetDescribesTheWayBackToTheKeyboard();
    void captureRestartsWhenTheKeyboardReturns();
    void capturedKeyIsShown();
    void keyCapturedWithoutTheSheetIsKept();
    void okWritesTheLastCapturedKey();
    void okBeforeAnyCaptureWritesZeroes();
    void okIsDisabledUntilAKeyIsCaptured();
    void okBeforeACaptureWritesTheEarlierKey();
    void cancelWritesNothingAndRestoresThePopUp();
    void escapeCancels();
    void keysOfAnotherKeyboardPressNoButtonBeforeACapture_data();
    void keysOfAnotherKeyboardPressNoButtonBeforeACapture();
    void returnIsOKOnceAKeyWasCaptured();
    void buttonsAreReachedByTabAndPressedBySpace();
    void oddUserInformationReadsAsZero();

    void gameModeNotificationFlipsTheFlagAndTheNotice();
    void gameModeWithoutAFunctionKeyChangesOnlyTheFlag();
    void hiddenNoticeHasItsText();
    void noticeFollowsTheDeviceSettings();
    void noticeDescribesGameMode();
    void otherKeysKeepFlagAndName();
    void noticeShowsForAssignedFunctionKeysOnly_data();
    void noticeShowsForAssignedFunctionKeysOnly();

private:
    QTemporaryDir mResources;
};

void KeysCaptureTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "this test needs a session bus");
    qputenv("QUILL_KESTRA_RESOURCES", mResources.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", mResources.path().toLocal8Bit());
}

void KeysCaptureTest::observesBothNotificationsOnce()
{
    const Tab tab(profile(u"P"_s));
    const DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    QCOMPARE(center.observationCount(tab.controller.get(), u"SingleKeyEvent271"_s), 1);
    QCOMPARE(center.observationCount(tab.controller.get(), u"Game Mode Pressed 271"_s), 1);
}

void KeysCaptureTest::openingStartsTheCapture()
{
    const auto tab = tabWithSheet();
    QVERIFY(tab->find<Sheet>("mSingleKeyWindow")->isUp());
    QVERIFY(tab->find<Sheet>("mSingleKeyWindow")->isVisible());
    QCOMPARE(tab->find<Sheet>("mSingleKeyWindow")->windowModality(), Qt::WindowModal);
    QCOMPARE(tab->find<Sheet>("mSingleKeyWindow")->parentWidget(), &tab->window);
    QVERIFY(tab->find<QLineEdit>("mSingleKeyInput")->text().isEmpty());
    QCOMPARE(tab->delegate.calls, QStringList{u"startSingleKeyRecording"_s});
}

void KeysCaptureTest::sheetDescribesTheWayBackToTheKeyboard()
{
    const auto tab = tabWithSheet();
    const auto *hint = tab->find<QLabel>("mSingleKeyHint");
    QVERIFY(hint->isVisible());
    QCOMPARE(hint->text(), u"Hold Escape for one second to use this keyboard in the window again."_s);
    QCOMPARE(tab->find<QLineEdit>("mSingleKeyInput")->accessibleDescription(), hint->text());
}

void KeysCaptureTest::captureRestartsWhenTheKeyboardReturns()
{
    const auto tab = tabWithSheet();
    tab->delegate.calls.clear();
    tab->controller->keyboardCameBack();
    QCOMPARE(tab->delegate.calls, QStringList{u"startSingleKeyRecording"_s});
    tab->find<QPushButton>("mSingleKeyCancel")->click();
    tab->delegate.calls.clear();
    tab->controller->keyboardCameBack();
    QCOMPARE(tab->delegate.calls, QStringList());
}

void KeysCaptureTest::capturedKeyIsShown()
{
    const auto tab = tabWithSheet();
    postCapture(6, 3);
    QTRY_COMPARE(tab->find<QLineEdit>("mSingleKeyInput")->text(), u"Left Control + Left Shift + C"_s);
    QCOMPARE(tab->controller->singleKeyHIDCode(), 6);
    QCOMPARE(tab->controller->singleKeyModifierCode(), 3);
    QCOMPARE(tab->delegate.calls.size(), 1);
}

void KeysCaptureTest::keyCapturedWithoutTheSheetIsKept()
{
    Tab tab(profile(u"P"_s));
    tab.window.show();
    tab.key("mA")->click();
    postCapture(6, 3);
    QTRY_COMPARE(tab.controller->singleKeyHIDCode(), 6);
    QCOMPARE(tab.controller->singleKeyModifierCode(), 3);
    QCOMPARE(tab.find<QLineEdit>("mSingleKeyInput")->text(), u"Left Control + Left Shift + C"_s);
    QVERIFY(tab.delegate.calls.isEmpty());
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    QVERIFY(tab.find<QLineEdit>("mSingleKeyInput")->text().isEmpty());
    tab.controller->clickSingleKeyOK(nullptr);
    QCOMPARE(tab.delegate.sentEntry(u"4"_s), entry(16, 6, 3));
}

void KeysCaptureTest::okWritesTheLastCapturedKey()
{
    const auto tab = tabWithSheet();
    postCapture(6, 0);
    QTRY_COMPARE(tab->find<QLineEdit>("mSingleKeyInput")->text(), u"C"_s);
    postCapture(7, 2);
    QTRY_COMPARE(tab->find<QLineEdit>("mSingleKeyInput")->text(), u"Left Shift + D"_s);
    tab->find<QPushButton>("mSingleKeyOK")->click();
    QVERIFY(!tab->find<Sheet>("mSingleKeyWindow")->isUp());
    QVERIFY(!tab->find<Sheet>("mSingleKeyWindow")->isVisible());
    QVERIFY(!tab->controller->isCancelSingleKey());
    QCOMPARE(tab->delegate.calls,
             (QStringList{u"startSingleKeyRecording"_s, u"updateKeySettings"_s, u"stopSingleKeyRecording"_s}));
    QCOMPARE(tab->delegate.sent.size(), 1);
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(16, 7, 2));
}

void KeysCaptureTest::okBeforeAnyCaptureWritesZeroes()
{
    const auto tab = tabWithSheet();
    tab->controller->clickSingleKeyOK(nullptr);
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(16, 0, 0));
}

void KeysCaptureTest::okIsDisabledUntilAKeyIsCaptured()
{
    const auto tab = tabWithSheet();
    auto *ok = tab->find<QPushButton>("mSingleKeyOK");
    // The second round reopens a sheet that had captured a key.
    for (int round = 0; round < 2; ++round) {
        QVERIFY(!ok->isEnabled());
        ok->click();
        QVERIFY(tab->find<Sheet>("mSingleKeyWindow")->isUp());
        QVERIFY(tab->delegate.sent.isEmpty());
        tab->controller->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, 5}}});
        QVERIFY(ok->isEnabled());
        tab->find<QPushButton>("mSingleKeyCancel")->click();
        tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    }
}

void KeysCaptureTest::okBeforeACaptureWritesTheEarlierKey()
{
    const auto tab = tabWithSheet();
    postCapture(9, 1);
    QTRY_COMPARE(tab->controller->singleKeyHIDCode(), 9);
    tab->find<QPushButton>("mSingleKeyCancel")->click();
    tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    QVERIFY(tab->find<QLineEdit>("mSingleKeyInput")->text().isEmpty());
    tab->controller->clickSingleKeyOK(nullptr);
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(16, 9, 1));
}

void KeysCaptureTest::cancelWritesNothingAndRestoresThePopUp()
{
    const auto tab = tabWithSheet();
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 1);
    postCapture(6, 0);
    QTRY_COMPARE(tab->controller->singleKeyHIDCode(), 6);
    tab->find<QPushButton>("mSingleKeyCancel")->click();
    QCOMPARE(tab->delegate.calls, (QStringList{u"startSingleKeyRecording"_s, u"stopSingleKeyRecording"_s}));
    QVERIFY(tab->controller->isCancelSingleKey());
    QCOMPARE(tab->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
    QVERIFY(!tab->find<Sheet>("mSingleKeyWindow")->isUp());
}

void KeysCaptureTest::escapeCancels()
{
    const auto tab = tabWithSheet();
    QTest::keyClick(tab->find<Sheet>("mSingleKeyWindow"), Qt::Key_Escape);
    QVERIFY(tab->controller->isCancelSingleKey());
    QCOMPARE(tab->delegate.calls.last(), u"stopSingleKeyRecording"_s);
    QVERIFY(tab->delegate.sent.isEmpty());
}

void KeysCaptureTest::keysOfAnotherKeyboardPressNoButtonBeforeACapture_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("A") << Qt::Key_A;
}

void KeysCaptureTest::keysOfAnotherKeyboardPressNoButtonBeforeACapture()
{
    QFETCH(Qt::Key, key);
    const auto tab = tabWithSheet();
    auto *sheet = tab->find<Sheet>("mSingleKeyWindow");
    // The second round reopens a sheet that had captured a key.
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(sheet->focusWidget(), tab->find<QLineEdit>("mSingleKeyInput"));
        tab->delegate.calls.clear();
        QTest::keyClick(sheet->focusWidget(), key);
        QVERIFY(sheet->isUp() && sheet->isVisible());
        QVERIFY(tab->find<QLineEdit>("mSingleKeyInput")->text().isEmpty());
        QVERIFY(tab->delegate.calls.isEmpty());
        tab->controller->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, 5}}});
        tab->find<QPushButton>("mSingleKeyCancel")->click();
        tab->find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    }
}

void KeysCaptureTest::returnIsOKOnceAKeyWasCaptured()
{
    const auto tab = tabWithSheet();
    QVERIFY(QTest::qWaitForWindowActive(tab->find<Sheet>("mSingleKeyWindow")));
    postCapture(6, 0);
    QTRY_COMPARE(tab->find<QLineEdit>("mSingleKeyInput")->text(), u"C"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!tab->find<Sheet>("mSingleKeyWindow")->isUp());
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(16, 6, 0));
}

void KeysCaptureTest::buttonsAreReachedByTabAndPressedBySpace()
{
    const auto tab = tabWithSheet();
    QVERIFY(QTest::qWaitForWindowActive(tab->find<Sheet>("mSingleKeyWindow")));
    QTRY_COMPARE(QApplication::focusWidget(), tab->find<QLineEdit>("mSingleKeyInput"));
    tab->controller->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, 5}}});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), tab->find<QPushButton>("mSingleKeyCancel"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), tab->find<QPushButton>("mSingleKeyOK"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!tab->find<Sheet>("mSingleKeyWindow")->isUp());
    QCOMPARE(tab->delegate.sentEntry(u"4"_s), entry(16, 5, 0));
}

void KeysCaptureTest::oddUserInformationReadsAsZero()
{
    const auto tab = tabWithSheet();
    tab->controller->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, 5}}});
    QCOMPARE(tab->controller->singleKeyHIDCode(), 5);
    tab->controller->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, QVariantList()}}});
    QCOMPARE(tab->controller->singleKeyHIDCode(), 0);
    QVERIFY(tab->find<QLineEdit>("mSingleKeyInput")->text().isEmpty());
}

void KeysCaptureTest::gameModeNotificationFlipsTheFlagAndTheNotice()
{
    Tab tab(profile(u"P"_s, {{u"58"_s, entry(20)}}));
    tab.key("mF1")->click();
    const QLabel *notice = tab.find<QLabel>("mFunctionKeysInfoLabel");
    QVERIFY(!notice->isHidden());
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOff", {u"F1"_s}));
    DistributedNotificationCenter::defaultCenter().post(DaemonProtocol::gameModePressed);
    QTRY_VERIFY(tab.controller->gameMode());
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOn", {u"F1"_s}));
    QVERIFY(notice->text().contains(u"F1"_s));
    DistributedNotificationCenter::defaultCenter().post(DaemonProtocol::gameModePressed);
    QTRY_VERIFY(!tab.controller->gameMode());
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysCaptureTest::gameModeWithoutAFunctionKeyChangesOnlyTheFlag()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    tab.key("mA")->click();
    DistributedNotificationCenter::defaultCenter().post(DaemonProtocol::gameModePressed);
    QTRY_VERIFY(tab.controller->gameMode());
    QVERIFY(tab.find<QLabel>("mFunctionKeysInfoLabel")->isHidden());
    QVERIFY(tab.find<QLabel>("mFunctionKeysInfoImage")->isHidden());
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeysCaptureTest::hiddenNoticeHasItsText()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    const QLabel *notice = tab.find<QLabel>("mFunctionKeysInfoLabel");
    tab.key("mF3")->click();
    QVERIFY(notice->isHidden()); // on its default assignment
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOff", {u"F3"_s}));
    tab.controller->gameModeSwitch({});
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOn", {u"F3"_s}));
    tab.key("mA")->click();
    tab.controller->gameModeSwitch({});
    QVERIFY(notice->isHidden());
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOff", {u"F3"_s}));
}

void KeysCaptureTest::noticeFollowsTheDeviceSettings()
{
    Tab tab(profile(u"P"_s, {{u"104"_s, entry(20)}}));
    tab.key("mF13")->click();
    const QLabel *notice = tab.find<QLabel>("mFunctionKeysInfoLabel");
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOff", {u"F13"_s}));
    tab.controller->setMDeviceSettingsDict({{u"ActiveProfile"_s, 0}, {u"GameMode"_s, true}});
    tab.controller->updateUISettings();
    QCOMPARE(notice->text(), localizedFormat("lkeyFunctionKeysInfoGameModeOn", {u"F13"_s}));
    tab.giveBack({{u"104"_s, entry(45)}});
    QVERIFY(notice->isHidden());
}

void KeysCaptureTest::noticeDescribesGameMode()
{
    for (const char *textKey : {"lkeyFunctionKeysInfoGameModeOn", "lkeyFunctionKeysInfoGameModeOff"}) {
        const QString text = localizedFormat(textKey, {u"F7"_s});
        QCOMPARE(text.count(u"F7"_s), 1);
        QVERIFY(!text.contains(u'%'));
        QVERIFY(text.contains(u"Command keys"_s));
    }
}

void KeysCaptureTest::otherKeysKeepFlagAndName()
{
    Tab tab(profile(u"P"_s));
    tab.key("mF12")->click();
    tab.key("mA")->click();
    QVERIFY(!tab.controller->isFunctionKeySelected()); // the key's own action changes it
    QCOMPARE(tab.controller->keyName(), u"F12"_s);
    tab.controller->checkForSelectedFunctionKey();
    QVERIFY(!tab.controller->isFunctionKeySelected());
    QCOMPARE(tab.controller->keyName(), u"F12"_s);
}

void KeysCaptureTest::noticeShowsForAssignedFunctionKeysOnly_data()
{
    QTest::addColumn<QString>("outlet");
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("command");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("F1 disabled") << u"mF1"_s << u"58"_s << 20 << true;
    QTest::newRow("F12 launches") << u"mF12"_s << u"69"_s << 46 << true;
    QTest::newRow("F13 single key") << u"mF13"_s << u"104"_s << 16 << true;
    QTest::newRow("F14 macro") << u"mF14"_s << u"105"_s << 10 << true;
    QTest::newRow("F1 default") << u"mF1"_s << u"58"_s << 45 << false;
    QTest::newRow("F1 unknown") << u"mF1"_s << u"58"_s << 30 << false; // appears at position 0
    QTest::newRow("M1 is no function key") << u"mM1"_s << u"106"_s << 20 << false;
    QTest::newRow("M5 is no function key") << u"mM5"_s << u"110"_s << 20 << false;
    QTest::newRow("A") << u"mA"_s << u"4"_s << 20 << false;
}

void KeysCaptureTest::noticeShowsForAssignedFunctionKeysOnly()
{
    QFETCH(QString, outlet);
    QFETCH(QString, code);
    QFETCH(int, command);
    QFETCH(bool, isShown);
    Tab tab(profile(u"P"_s, {{code, entry(command)}}));
    tab.key("mF2")->click(); // makes a leftover flag visible
    tab.window.findChild<KeyButton *>(outlet)->click();
    QCOMPARE(!tab.find<QLabel>("mFunctionKeysInfoLabel")->isHidden(), isShown);
    QCOMPARE(!tab.find<QLabel>("mFunctionKeysInfoImage")->isHidden(), isShown);
}

QTEST_MAIN(KeysCaptureTest)
#include "keyscapturetest.moc"
