// SPDX-License-Identifier: MIT
// A user without the keyboard of this program: what he types into the window's sheets and recordings is captured by the
// real daemon as keys of its virtual keyboard.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"
#include "daemon/settings/settingsdocument.h"
#include "daemonlink/daemontransport.h"
#include "keys/keyboardkeyscontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrorecord.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/sessionbus.h"
#include "platform/sheet.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"
#include "tests/support/typing.h"

#include <QAction>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int keysTabIndex = 0;
constexpr int macrosTabIndex = 2;
constexpr int singleKeyPosition = 1;
constexpr uint keyboardPage = 7;
constexpr uint keyA = 4;

const QString typeHere = u"Type the key here: the virtual keyboard is in use."_s;
const QString holdEscape = u"Hold Escape for one second to use this keyboard in the window again."_s;
const QString usableAgain = u"You can use this keyboard in the window again."_s;

} // namespace

class TypingEndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void remapsAKeyToTheTypedOne();
    void typedModifiersBelongToTheKey();
    void noTypedKeyActsInTheSheet();
    void escapeCancelsTheSheet();
    void heldEscapeEndsTheCaptureOfTheSheet();
    void closedSheetReleasesItsKeys();
    void recordsATypedMacro();
    void noTypedKeyEndsTheRecording();
    void heldEscapeEndsTheRecording();
    void anotherWindowTakesTheKeys();
    void clickIntoTheRecordingReturnsTheKeys();
    void stoppedRecordingReleasesItsKeys();
    void appendsTypedKeys();
    void changesAnEventToTheTypedKey();
    void textFieldsKeepTheirKeys();
    void restartedDaemonReceivesTypedKeys();
    void anotherClientsCaptureReceivesNothing();
    void realKeyboardIsNamedAndReceivesNothing();

private:
    void openSingleKeySheet();
    void addMacro();
    void record();
    void stop() const { QTest::mouseClick(mHub->find<QPushButton>("mRecordMacroDetails"), Qt::LeftButton); }
    /// Waits until the daemon has given the keys to the window, which types from then on.
    void waitForTyping();
    /// Does what a window manager does when a dialog opens or closes.
    void giveFocusTo(QWidget *widget);
    [[nodiscard]] Sheet *singleKeySheet() const { return mHub->find<Sheet>("mSingleKeyWindow"); }
    [[nodiscard]] QString shownKey() const { return mHub->find<QLineEdit>("mSingleKeyInput")->text(); }
    [[nodiscard]] QString text(const char *label) const { return mHub->find<QLabel>(label)->text(); }
    [[nodiscard]] bool isRecording() const { return mHub->controller->macrosController()->isRecordingOrCapturing(); }
    [[nodiscard]] QStringList lines() const { return mHub->controller->macrosController()->macroDetailsArray(); }
    /// Those of the lines that are events.
    [[nodiscard]] QStringList events() const;
    [[nodiscard]] QList<uint> pressedKeys()
    {
        return qdbus_cast<QList<uint>>(mDaemon->keyboardProperty(u"PressedKeys"_s));
    }
    [[nodiscard]] QVariantMap document();
    [[nodiscard]] QVariantMap storedEntryOfA();

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void TypingEndToEndTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
    mHub = std::make_unique<Hub>();
    QVERIFY(mHub->openInFront());
}

void TypingEndToEndTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void TypingEndToEndTest::waitForTyping()
{
    QTRY_COMPARE(mDaemon->keyboardProperty(u"CaptureClient"_s),
                 QVariant(QString(DaemonProtocol::configuratorReplyPortName)));
    QTRY_COMPARE(text("mSingleKeyInputLabel"), typeHere);
    // The answer to a question on the window's connection comes after the signal that the window waits for.
    const QDBusPendingCallWatcher question(sharedSessionBus().asyncCall(
        QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), DeviceKeys::objectPath,
                                       DeviceKeys::interfaceName, u"Status"_s)));
    const QSignalSpy answers(&question, &QDBusPendingCallWatcher::finished);
    QTRY_COMPARE(answers.size(), 1);
}

void TypingEndToEndTest::giveFocusTo(QWidget *widget)
{
    widget->window()->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), widget->window());
    QTRY_VERIFY(widget == widget->window() || widget->hasFocus());
}

void TypingEndToEndTest::openSingleKeySheet()
{
    giveFocusTo(mHub->window.get());
    QTest::mouseClick(mHub->find<QWidget>("mA"), Qt::LeftButton);
    mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(singleKeyPosition)->trigger();
    giveFocusTo(mHub->find<QWidget>("mSingleKeyInput"));
    waitForTyping();
}

void TypingEndToEndTest::addMacro()
{
    mHub->controller->selectTabAtIndex(macrosTabIndex);
    QTest::mouseClick(mHub->find<QPushButton>("mAddMacro"), Qt::LeftButton);
    Typing::tap(Typing::enter);
    QTRY_COMPARE(mHub->find<TableView>("mMacroTableView")->editedRow(), -1);
}

void TypingEndToEndTest::record()
{
    QTest::mouseClick(mHub->find<QPushButton>("mRecordMacroDetails"), Qt::LeftButton);
    QVERIFY(isRecording());
    waitForTyping();
}

QStringList TypingEndToEndTest::events() const
{
    QStringList result;
    for (qsizetype row = 0; row < lines().size(); row += 2)
        result += lines().at(row);
    return result;
}

QVariantMap TypingEndToEndTest::document()
{
    return mDaemon->request(Command::readSettings)->values.value(DaemonProtocol::allDevSettings).toMap();
}

QVariantMap TypingEndToEndTest::storedEntryOfA()
{
    const QVariantMap profile = document().value(SettingsKeys::profiles).toList().first().toMap();
    return profile.value(SettingsKeys::keys).toMap().value(u"4"_s).toMap();
}

void TypingEndToEndTest::remapsAKeyToTheTypedOne()
{
    openSingleKeySheet();
    QCOMPARE(text("mSingleKeyHint"), holdEscape);
    SentRecorder recorder;
    Typing::tap(Typing::b);
    QTRY_COMPARE(shownKey(), u"B"_s);
    QTest::mouseClick(mHub->find<QPushButton>("mSingleKeyOK"), Qt::LeftButton);
    QVERIFY(!singleKeySheet()->isUp());
    QCOMPARE(storedEntryOfA().value(SettingsKeys::command).toInt(), 16);
    QCOMPARE(storedEntryOfA().value(SettingsKeys::param1).toInt(), 5);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, keyA}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {keyboardPage, keyA}), QString());
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:5"_s, u"-7:5"_s}));
}

void TypingEndToEndTest::typedModifiersBelongToTheKey()
{
    openSingleKeySheet();
    Typing::press(Typing::leftControl);
    Typing::tap(Typing::c, Qt::ControlModifier);
    Typing::release(Typing::leftControl);
    QTRY_COMPARE(shownKey(), u"Left Control + C"_s);
}

void TypingEndToEndTest::noTypedKeyActsInTheSheet()
{
    openSingleKeySheet();
    Typing::tap(Typing::b); // OK is the default button from now on
    QTRY_COMPARE(shownKey(), u"B"_s);
    const QList<std::pair<Typing::Key, QString>> keys{
        {Typing::space, u"Space"_s}, {Typing::enter, u"Return"_s}, {Typing::tab, u"Tab"_s}, {Typing::f1, u"F1"_s}};
    for (const auto &[key, name] : keys) {
        Typing::tap(key);
        QTRY_COMPARE(shownKey(), name);
        QVERIFY(singleKeySheet()->isUp());
        QVERIFY(mHub->find<QLineEdit>("mSingleKeyInput")->hasFocus());
        QCOMPARE(QApplication::activeWindow(), singleKeySheet()); // no help
    }
}

void TypingEndToEndTest::escapeCancelsTheSheet()
{
    openSingleKeySheet();
    Typing::tap(Typing::b);
    QTRY_COMPARE(shownKey(), u"B"_s);
    const QVariantMap before = storedEntryOfA();
    Typing::tap(Typing::escape);
    QVERIFY(!singleKeySheet()->isUp());
    QCOMPARE(storedEntryOfA(), before);
    QCOMPARE(mDaemon->keyboardProperty(u"CaptureClient"_s).toString(), QString());
    QTRY_COMPARE(pressedKeys(), QList<uint>());
}

void TypingEndToEndTest::heldEscapeEndsTheCaptureOfTheSheet()
{
    openSingleKeySheet();
    Typing::tap(Typing::b);
    QTRY_COMPARE(shownKey(), u"B"_s);
    QVERIFY(Typing::holdUntil(Typing::escape, [this] { return text("mSingleKeyInputLabel") == usableAgain; }));
    QVERIFY(singleKeySheet()->isUp());
    QVERIFY(!mHub->find<QLabel>("mSingleKeyHint")->isVisible());
    QTRY_COMPARE(shownKey(), u"B"_s);
    Typing::tap(Typing::enter);
    QVERIFY(!singleKeySheet()->isUp());
    QCOMPARE(storedEntryOfA().value(SettingsKeys::param1).toInt(), 5);
    // The next sheet asks again.
    openSingleKeySheet();
    QCOMPARE(text("mSingleKeyHint"), holdEscape);
}

void TypingEndToEndTest::closedSheetReleasesItsKeys()
{
    openSingleKeySheet();
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {keyboardPage, keyA}), QString());
    Typing::press(Typing::leftControl);
    Typing::press(Typing::b, Qt::ControlModifier);
    QTRY_COMPARE(pressedKeys().size(), 3);
    QTest::mouseClick(mHub->find<QPushButton>("mSingleKeyCancel"), Qt::LeftButton);
    QTRY_COMPARE(pressedKeys(), QList<uint>{(keyboardPage << 16U) | keyA}); // which the window did not press
}

void TypingEndToEndTest::recordsATypedMacro()
{
    addMacro();
    record();
    QCOMPARE(text("mRecordingHint"),
             u"Type the keys of the macro here: the virtual keyboard is in use.\n"_s + holdEscape);
    SentRecorder recorder;
    Typing::press(Typing::a);
    for (int times = 0; times < 3; ++times)
        Typing::press(Typing::a, {}, Typing::Repetition::automatic);
    Typing::press(Typing::b);
    Typing::release(Typing::a);
    Typing::release(Typing::b);
    QTRY_COMPARE(events().size(), 4);
    stop();
    QVERIFY(!isRecording());
    QCOMPARE(events(), QStringList({u"Key Press A"_s, u"Key Press B"_s, u"Key Release A"_s, u"Key Release B"_s}));
    QCOMPARE(MacroRecord::events(document().value(SettingsKeys::macros).toList().last().toMap()).size(), 4);
    QCOMPARE(recorder.sent(), QStringList());
}

void TypingEndToEndTest::noTypedKeyEndsTheRecording()
{
    addMacro();
    record();
    for (const Typing::Key &key : {Typing::space, Typing::enter, Typing::tab, Typing::f1, Typing::escape}) {
        Typing::tap(key);
        QVERIFY(isRecording());
        QVERIFY(mHub->find<QPushButton>("mRecordMacroDetails")->hasFocus());
        QCOMPARE(QApplication::activeWindow(), mHub->window.get());
    }
    QTRY_COMPARE(events().size(), 10);
    stop();
    QCOMPARE(events(),
             QStringList({u"Key Press Space"_s, u"Key Release Space"_s, u"Key Press Return"_s, u"Key Release Return"_s,
                          u"Key Press Tab"_s, u"Key Release Tab"_s, u"Key Press F1"_s, u"Key Release F1"_s,
                          u"Key Press Escape"_s, u"Key Release Escape"_s}));
}

void TypingEndToEndTest::heldEscapeEndsTheRecording()
{
    addMacro();
    record();
    Typing::tap(Typing::a);
    QTRY_COMPARE(events().size(), 2);
    QVERIFY(Typing::holdUntil(Typing::escape, [this] { return text("mRecordingHint") == usableAgain; }));
    QVERIFY(isRecording());
    Typing::tap(Typing::space); // presses Stop
    QVERIFY(!isRecording());
    QCOMPARE(events(), QStringList({u"Key Press A"_s, u"Key Release A"_s}));
}

void TypingEndToEndTest::anotherWindowTakesTheKeys()
{
    addMacro();
    record();
    Typing::press(Typing::b);
    QTRY_COMPARE(pressedKeys().size(), 1);
    QLineEdit another;
    another.show();
    another.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&another));
    QTRY_COMPARE(pressedKeys(), QList<uint>());
    Typing::tap(Typing::a);
    QCOMPARE(another.text(), u"a"_s);
    stop();
    QVERIFY(!events().contains(u"Key Press A"_s));
}

void TypingEndToEndTest::clickIntoTheRecordingReturnsTheKeys()
{
    addMacro();
    record();
    mHub->find<QPushButton>("mHelpButton")->setFocus();
    Typing::tap(Typing::b);
    QTest::mouseClick(mHub->find<QLabel>("mMacroAssignmentLabel"), Qt::LeftButton);
    Typing::tap(Typing::a);
    QTRY_COMPARE(events(), QStringList({u"Key Press A"_s, u"Key Release A"_s}));
}

void TypingEndToEndTest::stoppedRecordingReleasesItsKeys()
{
    addMacro();
    record();
    Typing::press(Typing::b);
    QTRY_COMPARE(pressedKeys().size(), 1);
    stop();
    QVERIFY(!isRecording());
    QTRY_COMPARE(pressedKeys(), QList<uint>());
    QCOMPARE(events(), QStringList({u"Key Press B"_s, u"Key Release B"_s}));
}

void TypingEndToEndTest::appendsTypedKeys()
{
    addMacro();
    record();
    Typing::tap(Typing::a);
    QTRY_COMPARE(events().size(), 2);
    stop();
    QTest::mouseClick(mHub->find<QPushButton>("mAddMacroDetails"), Qt::LeftButton);
    waitForTyping();
    Typing::tap(Typing::b);
    QTRY_COMPARE(events().size(), 4);
    stop();
    QCOMPARE(events(), QStringList({u"Key Press A"_s, u"Key Release A"_s, u"Key Press B"_s, u"Key Release B"_s}));
}

void TypingEndToEndTest::changesAnEventToTheTypedKey()
{
    addMacro();
    record();
    Typing::tap(Typing::a);
    QTRY_COMPARE(events().size(), 2);
    stop();
    const auto edit = [&] {
        giveFocusTo(mHub->window.get());
        mHub->find<TableView>("mMacroDetailsTableView")->selectRow(0);
        mHub->find<PulldownButton>("mSettingsMacroDetails")->itemWithTag(MacroCommands::edit)->trigger();
        giveFocusTo(mHub->find<QWidget>("mInputMacroEvent"));
        waitForTyping();
    };
    edit();
    const auto *sheet = mHub->find<Sheet>("mEditEventWindow");
    QCOMPARE(text("mEnterMacroEventLabel"), typeHere);
    Typing::tap(Typing::b);
    Typing::tap(Typing::enter); // is not OK
    QTRY_COMPARE(mHub->find<QLineEdit>("mInputMacroEvent")->text(), u"Return"_s);
    Typing::tap(Typing::escape);
    QVERIFY(!sheet->isUp());
    QCOMPARE(events().first(), u"Key Press A"_s);
    edit();
    Typing::tap(Typing::b);
    QTRY_COMPARE(mHub->find<QLineEdit>("mInputMacroEvent")->text(), u"B"_s);
    QTest::mouseClick(mHub->find<QPushButton>("mMacroEventEditOK"), Qt::LeftButton);
    QVERIFY(!sheet->isUp());
    QCOMPARE(events().first(), u"Key Press B"_s);
}

void TypingEndToEndTest::textFieldsKeepTheirKeys()
{
    addMacro();
    auto *list = mHub->find<TableView>("mMacroTableView");
    mHub->find<PulldownButton>("mSettingsMacro")->itemWithTag(MacroCommands::rename)->trigger();
    QVERIFY(list->editedRow() >= 0);
    SentRecorder recorder;
    for (const Typing::Key &key : {Typing::a, Typing::b, Typing::c, Typing::enter})
        Typing::tap(key);
    const auto nameOfLast = [this] {
        return MacroRecord::name(document().value(SettingsKeys::macros).toList().last().toMap());
    };
    QTRY_COMPARE(nameOfLast(), u"abc"_s);
    QCOMPARE(recorder.sent(), QStringList());
}

void TypingEndToEndTest::restartedDaemonReceivesTypedKeys()
{
    openSingleKeySheet();
    Typing::press(Typing::b);
    QTRY_COMPARE(shownKey(), u"B"_s);
    mDaemon->kill();
    QTRY_VERIFY(text("mSingleKeyInputLabel") != typeHere);
    Typing::press(Typing::b, {}, Typing::Repetition::automatic);
    QVERIFY(mDaemon->start());
    waitForTyping();
    QCOMPARE(pressedKeys(), QList<uint>());
    Typing::release(Typing::b);
    Typing::tap(Typing::c);
    QTRY_COMPARE(shownKey(), u"C"_s);
}

void TypingEndToEndTest::anotherClientsCaptureReceivesNothing()
{
    openSingleKeySheet();
    QVERIFY(mDaemon->request(Command::startSingleKeyRecording));
    QTRY_COMPARE(text("mSingleKeyInputLabel"), usableAgain);
    Typing::tap(Typing::b);
    Typing::tap(Typing::escape);
    QVERIFY(!singleKeySheet()->isUp()); // as in any sheet
    QCOMPARE(shownKey(), QString());
}

void TypingEndToEndTest::realKeyboardIsNamedAndReceivesNothing()
{
    mHub.reset();
    mDaemon->terminate();
    const QTemporaryDir folder;
    ScriptedDaemon daemon(sampleDocument());
    std::unique_ptr<ScriptedDevices> devices;
    std::unique_ptr<DeviceChoice> choice;
    std::unique_ptr<DevicesObject> devicesObject;
    std::unique_ptr<VirtualKeyboard> keyboard;
    std::unique_ptr<VirtualKeyboardObject> keyboardObject;
    daemon.run([&](const QDBusConnection &connection) {
        devices = std::make_unique<ScriptedDevices>();
        devices->plug({ScriptedDevices::keyboard(1)});
        choice = std::make_unique<DeviceChoice>(folder.path());
        devicesObject = std::make_unique<DevicesObject>(*devices, *choice);
        keyboard = std::make_unique<VirtualKeyboard>();
        KeySettings settings = keySettingsOf(SettingsDocument::minimal(), {});
        (void)keyboard->keys().start(settings);
        keyboard->showCapture(DaemonProtocol::configuratorReplyPortName); // more than a daemon would report
        keyboardObject = std::make_unique<VirtualKeyboardObject>(*keyboard);
        QVERIFY(devices->use({u"1b2c:0001"_s}));
        QVERIFY(devicesObject->registerOn(connection));
        QVERIFY(keyboardObject->registerOn(connection));
    });
    mHub = std::make_unique<Hub>();
    mHub->open(daemon);
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    giveFocusTo(mHub->window.get());
    QTest::mouseClick(mHub->find<QWidget>("mA"), Qt::LeftButton);
    mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(singleKeyPosition)->trigger();
    giveFocusTo(mHub->find<QWidget>("mSingleKeyInput"));
    QTRY_COMPARE(text("mSingleKeyInputLabel"), u"On “Keyboard 1”, press the key that the selected key should send."_s);
    QCOMPARE(text("mSingleKeyHint"), holdEscape);
    Typing::press(Typing::b);
    mHub->controller->loadLatestSettings(); // its request comes after everything that the window sent before
    QList<HidUsage> pressed;
    daemon.run([&](const QDBusConnection &) { pressed = keyboard->pressedKeys(); });
    Typing::release(Typing::b);
    Typing::tap(Typing::escape);
    QVERIFY(!singleKeySheet()->isUp());
    daemon.run([&](const QDBusConnection &) {
        keyboardObject.reset();
        keyboard.reset();
        devicesObject.reset();
        choice.reset();
        devices.reset();
    });
    QVERIFY(pressed.isEmpty());
    mHub.reset();
}

QTEST_MAIN(TypingEndToEndTest)
#include "typingendtoendtest.moc"
