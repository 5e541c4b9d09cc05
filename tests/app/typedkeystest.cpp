// SPDX-License-Identifier: MIT
// Keys typed into an area of a window, and what the virtual keyboard receives of them. The test is also the daemon,
// with the real virtual keyboard and simulated real ones.
#include "app/typedkeys.h"

#include "app/devicesstatus.h"
#include "app/servicestatus.h"
#include "base/daemonprotocol.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "daemon/keyboards/virtual/virtualkeyboardadaptor.h"
#include "daemon/settings/settingsdocument.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"
#include "platform/sheet.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"
#include "tests/support/typing.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

const QString ourPort = DaemonProtocol::configuratorReplyPortName;
const QString anotherPort = u"AnotherPort"_s;

} // namespace

class TypedKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void typedKeysArePressedAndReleased();
    void keyMeansItsPlace_data();
    void keyMeansItsPlace();
    void keysWithoutAnAssignmentPressNothing_data();
    void keysWithoutAnAssignmentPressNothing();
    void repetitionPressesNothing();
    void noKeyActsInTheWindow_data();
    void noKeyActsInTheWindow();
    void keysOutsideTheAreaActInTheWindow();
    void keysActInTheWindowWithoutACapture_data();
    void keysActInTheWindowWithoutACapture();
    void heldKeysAreReleasedWhenTheListeningEnds_data();
    void heldKeysAreReleasedWhenTheListeningEnds();
    void keysOfOthersStayDown();
    void heldKeyDoesNotActAfterTheListening();
    void heldKeyFromBeforeIsNeitherPressedNorReleased();
    void escapeCancelsASheet();
    void escapeWithAnotherKeyCancelsNothing();
    void sourceFollowsTheKeyboardInUse();
    void sourceReportsTheEndOfTheCapture();

private:
    void startDaemon();
    void endDaemon();
    /// Sets who has the keys, and waits until the window knows it.
    void capture(const QString &client);
    void listen() { mTyped->listen(mArea); }
    [[nodiscard]] QStringList pressed() const;
    [[nodiscard]] bool haveCallsArrived();

    QTemporaryDir mFolder;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mDevicesObject;
    std::unique_ptr<VirtualKeyboard> mVirtual;
    std::unique_ptr<VirtualKeyboardObject> mVirtualObject;
    QStringList mChanges; // "+4" for a press of the usage 4, "-4" for a release

    std::unique_ptr<QWidget> mWindow;
    QWidget *mArea = nullptr;
    QPushButton *mButton = nullptr; // in the area
    QLineEdit *mOutside = nullptr;  // beside the area
    int mActions = 0;               // of the button and the shortcuts
    std::unique_ptr<DevicesStatus> mInUse;
    std::unique_ptr<ServiceStatus> mService;
    std::unique_ptr<TypedKeys> mTyped;
};

void TypedKeysTest::init()
{
    mDevices = std::make_unique<ScriptedDevices>();
    mDevices->plug({ScriptedDevices::keyboard(1), ScriptedDevices::keyboard(2)});
    mChoice = std::make_unique<DeviceChoice>(mFolder.path());
    mDevicesObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
    mVirtual = std::make_unique<VirtualKeyboard>();
    KeySettings settings = keySettingsOf(SettingsDocument::minimal(), {});
    (void)mVirtual->keys().start(settings);
    mVirtual->keys().listen({.isCapturing = true, .isReporting = true});
    connect(&mVirtual->keys(), &KeyPath::keyReported, this,
            [this](HidUsage key, bool isDown) { mChanges += (isDown ? u'+' : u'-') + QString::number(key.usage); });
    mVirtualObject = std::make_unique<VirtualKeyboardObject>(*mVirtual);
    startDaemon();

    mWindow = std::make_unique<QWidget>();
    mArea = new QWidget;
    mButton = new QPushButton(u"Stop"_s);
    mOutside = new QLineEdit;
    (new QVBoxLayout(mArea))->addWidget(mButton);
    auto *column = new QVBoxLayout(mWindow.get());
    column->addWidget(mArea);
    column->addWidget(mOutside);
    connect(mButton, &QPushButton::clicked, this, [this] { ++mActions; });
    for (const Qt::Key key : {Qt::Key_F1, Qt::Key_Return, Qt::Key_A}) {
        auto *shortcut = new QShortcut(QKeySequence(key), mWindow.get());
        connect(shortcut, &QShortcut::activated, this, [this] { ++mActions; });
    }
    mWindow->show();
    mWindow->activateWindow();
    mButton->setFocus();
    QTRY_VERIFY(mButton->hasFocus());
    mInUse = std::make_unique<DevicesStatus>();
    mInUse->start();
    mService = std::make_unique<ServiceStatus>();
    mService->start();
    mTyped = std::make_unique<TypedKeys>(*mInUse, *mService);
    QTRY_COMPARE(mService->isRunning(), true);
    QTRY_VERIFY(mInUse->isVirtual());
    capture(ourPort);
    listen();
    mActions = 0;
    mChanges.clear();
}

void TypedKeysTest::cleanup()
{
    mTyped.reset();
    mService.reset();
    mInUse.reset();
    mWindow.reset();
    endDaemon();
    mVirtualObject.reset();
    mVirtual.reset();
    mDevicesObject.reset();
    mChoice.reset();
    mDevices.reset();
}

void TypedKeysTest::startDaemon()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(mDevicesObject->registerOn(bus));
    QVERIFY(mVirtualObject->registerOn(bus));
    QVERIFY(bus.registerService(messagePortBusName(DaemonProtocol::requestPortName)));
}

void TypedKeysTest::endDaemon()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(messagePortBusName(DaemonProtocol::requestPortName));
    bus.unregisterObject(DeviceKeys::objectPath);
    bus.unregisterObject(DaemonProtocol::virtualKeyboardPath);
}

void TypedKeysTest::capture(const QString &client)
{
    mVirtual->showCapture(client);
    QVERIFY(haveCallsArrived());
}

/// True once everything that either side has sent has arrived.
bool TypedKeysTest::haveCallsArrived()
{
    // An answer to the window's question arrives after everything that the daemon sent before, and the question after
    // everything that the window sent before. Twice: the window may react.
    for (int round = 0; round < 2; ++round) {
        const QDBusPendingCallWatcher question(sharedSessionBus().asyncCall(
            QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), DeviceKeys::objectPath,
                                           DeviceKeys::interfaceName, u"Status"_s)));
        const QSignalSpy answers(&question, &QDBusPendingCallWatcher::finished);
        if (!QTest::qWaitFor([&] { return !answers.isEmpty(); }))
            return false;
    }
    return true;
}

QStringList TypedKeysTest::pressed() const
{
    QStringList usages;
    for (const HidUsage key : mVirtual->pressedKeys())
        usages += QString::number(key.usage);
    return usages;
}

void TypedKeysTest::typedKeysArePressedAndReleased()
{
    Typing::press(Typing::leftControl);
    Typing::press(Typing::c, Qt::ControlModifier);
    QTRY_COMPARE(pressed(), QStringList({u"224"_s, u"6"_s}));
    Typing::release(Typing::c, Qt::ControlModifier);
    Typing::release(Typing::leftControl);
    QTRY_COMPARE(mChanges, QStringList({u"+224"_s, u"+6"_s, u"-6"_s, u"-224"_s}));
}

void TypedKeysTest::keyMeansItsPlace_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<Qt::Key>("meaning"); // in the user's layout
    QTest::addColumn<QString>("usage");
    QTest::newRow("Y on a German keyboard") << quint32(KEY_Z) << Qt::Key_Y << u"29"_s;
    QTest::newRow("Q on a French keyboard") << quint32(KEY_A) << Qt::Key_Q << u"4"_s;
    QTest::newRow("Escape on Caps Lock") << quint32(KEY_CAPSLOCK) << Qt::Key_Escape << u"57"_s;
    QTest::newRow("1 on the keypad") << quint32(KEY_KP1) << Qt::Key_1 << u"89"_s;
    QTest::newRow("the key beside the left Shift") << quint32(KEY_102ND) << Qt::Key_Less << u"100"_s;
    QTest::newRow("right Shift") << quint32(KEY_RIGHTSHIFT) << Qt::Key_Shift << u"229"_s;
    QTest::newRow("M1") << quint32(KEY_MACRO1) << Qt::Key_unknown << u"106"_s;
}

void TypedKeysTest::keyMeansItsPlace()
{
    QFETCH(quint32, code);
    QFETCH(Qt::Key, meaning);
    QFETCH(QString, usage);
    Typing::tap({code, meaning, {}});
    QTRY_COMPARE(mChanges, QStringList({u'+' + usage, u'-' + usage}));
}

void TypedKeysTest::keysWithoutAnAssignmentPressNothing_data()
{
    QTest::addColumn<quint32>("code");
    QTest::newRow("a media key") << quint32(KEY_PLAYPAUSE);
    QTest::newRow("the greatest code") << quint32(KEY_MAX);
    QTest::newRow("a code that does not exist") << quint32(KEY_CNT);
    QTest::newRow("far beyond") << 0xFFFF0000u;
    QTest::newRow("none") << quint32(KEY_RESERVED);
}

void TypedKeysTest::keysWithoutAnAssignmentPressNothing()
{
    QFETCH(quint32, code);
    Typing::tap({code, Qt::Key_A, u"a"_s});
    QCOMPARE(mActions, 0);
    Typing::tap(Typing::b);
    QTRY_COMPARE(mChanges, QStringList({u"+5"_s, u"-5"_s}));
}

void TypedKeysTest::repetitionPressesNothing()
{
    Typing::press(Typing::b);
    for (int times = 0; times < 3; ++times)
        Typing::press(Typing::b, {}, Typing::Repetition::automatic);
    Typing::release(Typing::b);
    Typing::tap(Typing::c);
    QTRY_COMPARE(mChanges, QStringList({u"+5"_s, u"-5"_s, u"+6"_s, u"-6"_s}));
}

void TypedKeysTest::noKeyActsInTheWindow_data()
{
    QTest::addColumn<Typing::Key>("key");
    QTest::newRow("Space") << Typing::space;
    QTest::newRow("Return") << Typing::enter;
    QTest::newRow("Tab") << Typing::tab;
    QTest::newRow("F1") << Typing::f1;
    QTest::newRow("A") << Typing::a;
}

void TypedKeysTest::noKeyActsInTheWindow()
{
    QFETCH(Typing::Key, key);
    mButton->setAutoDefault(true); // Return presses it
    Typing::tap(key);
    QTRY_COMPARE(mChanges.size(), 2);
    QCOMPARE(mActions, 0);
    QVERIFY(mButton->hasFocus());
    // It would act without the listening.
    mTyped->listen(nullptr);
    Typing::tap(key);
    QVERIFY(mActions == 1 || mOutside->hasFocus());
    QVERIFY(haveCallsArrived());
    QCOMPARE(mChanges.size(), 2);
}

void TypedKeysTest::keysOutsideTheAreaActInTheWindow()
{
    mOutside->setFocus();
    Typing::tap(Typing::b);
    QCOMPARE(mOutside->text(), u"b"_s);
    Typing::tap(Typing::f1);
    QCOMPARE(mActions, 1);
    QMenu menu;
    int chosen = 0;
    connect(menu.addAction(u"One"_s), &QAction::triggered, this, [&chosen] { ++chosen; });
    mButton->setFocus();
    menu.popup(mWindow->mapToGlobal(QPoint()));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    Typing::tap({KEY_DOWN, Qt::Key_Down, {}});
    Typing::tap(Typing::enter);
    QCOMPARE(chosen, 1);
    QVERIFY(haveCallsArrived());
    QCOMPARE(mChanges, QStringList());
}

void TypedKeysTest::keysActInTheWindowWithoutACapture_data()
{
    QTest::addColumn<QString>("client");
    QTest::addColumn<bool>("isRealKeyboardUsed");
    QTest::newRow("the computer has the keys") << QString() << false;
    QTest::newRow("another client has the keys") << anotherPort << false;
    QTest::newRow("a real keyboard is in use") << ourPort << true;
}

void TypedKeysTest::keysActInTheWindowWithoutACapture()
{
    QFETCH(QString, client);
    QFETCH(bool, isRealKeyboardUsed);
    capture(client);
    if (isRealKeyboardUsed) {
        QVERIFY(mDevices->use({u"1b2c:0001"_s}));
        QTRY_COMPARE(mInUse->keyboards().value_or(KeyboardsInUse()).names, QStringList{u"Keyboard 1"_s});
    }
    Typing::tap(Typing::f1);
    Typing::tap(Typing::space);
    QCOMPARE(mActions, 2);
    QVERIFY(haveCallsArrived());
    QCOMPARE(mChanges, QStringList());
}

void TypedKeysTest::heldKeysAreReleasedWhenTheListeningEnds_data()
{
    QTest::addColumn<QString>("cause");
    for (const char *cause : {"focus", "window", "menu", "area", "capture", "real keyboard", "quit"})
        QTest::newRow(cause) << QString::fromLatin1(cause);
}

void TypedKeysTest::heldKeysAreReleasedWhenTheListeningEnds()
{
    QFETCH(QString, cause);
    Typing::press(Typing::leftControl);
    Typing::press(Typing::b);
    QTRY_COMPARE(pressed().size(), 2);
    QWidget another;
    QMenu menu;
    menu.addAction(u"One"_s);
    if (cause == "focus"_L1) {
        mOutside->setFocus();
    } else if (cause == "window"_L1) {
        another.show();
        another.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&another));
    } else if (cause == "menu"_L1) {
        menu.popup(mWindow->mapToGlobal(QPoint()));
    } else if (cause == "area"_L1) {
        mTyped->listen(nullptr);
    } else if (cause == "capture"_L1) {
        capture({});
    } else if (cause == "real keyboard"_L1) {
        QVERIFY(mDevices->use({u"1b2c:0001"_s}));
    } else {
        mTyped.reset();
    }
    QTRY_COMPARE(pressed(), QStringList());
    QCOMPARE(mChanges, QStringList({u"+224"_s, u"+5"_s, u"-5"_s, u"-224"_s}));
}

void TypedKeysTest::keysOfOthersStayDown()
{
    QVERIFY(mVirtual->press(HidUsage::keyboardPage, 4));
    Typing::press(Typing::b);
    QTRY_COMPARE(pressed(), QStringList({u"4"_s, u"5"_s}));
    mOutside->setFocus();
    QTRY_COMPARE(pressed(), QStringList{u"4"_s});
}

void TypedKeysTest::heldKeyDoesNotActAfterTheListening()
{
    Typing::press(Typing::f1);
    QTRY_COMPARE(pressed().size(), 1);
    mTyped->listen(nullptr);
    Typing::press(Typing::f1, {}, Typing::Repetition::automatic);
    Typing::release(Typing::f1);
    QCOMPARE(mActions, 0);
    Typing::tap(Typing::f1); // pressed again, it does
    QCOMPARE(mActions, 1);
}

void TypedKeysTest::heldKeyFromBeforeIsNeitherPressedNorReleased()
{
    mTyped->listen(nullptr);
    Typing::press(Typing::b);
    listen();
    Typing::press(Typing::b, {}, Typing::Repetition::automatic);
    Typing::release(Typing::b);
    Typing::tap(Typing::c);
    QTRY_COMPARE(mChanges, QStringList({u"+6"_s, u"-6"_s}));
}

void TypedKeysTest::escapeCancelsASheet()
{
    Sheet sheet;
    QPushButton cancel(u"Cancel"_s, &sheet);
    connect(&cancel, &QPushButton::clicked, &sheet, [&sheet] { sheet.endSheet(); });
    sheet.setCancelButton(&cancel);
    sheet.beginSheet(mWindow.get());
    QVERIFY(QTest::qWaitForWindowActive(&sheet));
    cancel.setFocus();
    QTRY_VERIFY(cancel.hasFocus());
    mTyped->listen(&sheet);
    Typing::tap(Typing::b);
    QVERIFY(sheet.isUp());
    Typing::tap(Typing::escape);
    QVERIFY(!sheet.isUp());
    mTyped->listen(nullptr);
    QTRY_COMPARE(pressed(), QStringList());
    // Outside a sheet it is a key like any.
    mWindow->activateWindow();
    mButton->setFocus();
    QTRY_VERIFY(mButton->hasFocus());
    listen();
    mChanges.clear();
    Typing::tap(Typing::escape);
    QTRY_COMPARE(mChanges, QStringList({u"+41"_s, u"-41"_s}));
}

void TypedKeysTest::escapeWithAnotherKeyCancelsNothing()
{
    Sheet sheet;
    QPushButton cancel(u"Cancel"_s, &sheet);
    sheet.setCancelButton(&cancel);
    const QSignalSpy cancelled(&cancel, &QPushButton::clicked);
    sheet.beginSheet(mWindow.get());
    QVERIFY(QTest::qWaitForWindowActive(&sheet));
    cancel.setFocus();
    QTRY_VERIFY(cancel.hasFocus());
    mTyped->listen(&sheet);
    Typing::press(Typing::leftControl);
    Typing::tap(Typing::escape, Qt::ControlModifier);
    Typing::release(Typing::leftControl);
    Typing::press(Typing::escape);
    Typing::tap(Typing::b);
    Typing::release(Typing::escape);
    QTRY_COMPARE(mChanges.size(), 8);
    QCOMPARE(cancelled.size(), 0);
}

void TypedKeysTest::sourceFollowsTheKeyboardInUse()
{
    using Kind = CaptureSource::Kind;
    const QSignalSpy changes(mTyped.get(), &TypedKeys::sourceChanged);
    QCOMPARE(mTyped->source(), (CaptureSource{Kind::window, {}}));
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0002"_s}));
    QTRY_COMPARE(mTyped->source(), (CaptureSource{Kind::realKeyboards, u"Keyboard 1, Keyboard 2"_s}));
    InputDevice device = ScriptedDevices::keyboard(1);
    device.name = u"Two\nlines"_s; // the names come from outside
    mDevices->plug({device});
    QTRY_COMPARE(mTyped->source(), (CaptureSource{Kind::realKeyboards, u"Two lines"_s}));
    device.name = QString(500, u'W');
    mDevices->plug({device});
    QTRY_VERIFY(mTyped->source().names.startsWith(u"WWW"_s) && mTyped->source().names.size() < 100);
    mDevices->plug({});
    QTRY_COMPARE(mTyped->source(), CaptureSource());
    mDevices->release();
    QTRY_COMPARE(mTyped->source(), (CaptureSource{Kind::window, {}}));
    endDaemon();
    mInUse->read(); // as the hub does when the daemon has gone
    QTRY_COMPARE(mTyped->source().kind, Kind::unknown);
    QVERIFY(changes.size() >= 5);
}

void TypedKeysTest::sourceReportsTheEndOfTheCapture()
{
    using Kind = CaptureSource::Kind;
    QCOMPARE(mTyped->source().kind, Kind::window);
    capture({});
    QCOMPARE(mTyped->source().kind, Kind::ended);
    listen(); // the window asks again
    QCOMPARE(mTyped->source().kind, Kind::window);
    capture(ourPort);
    capture({});
    QCOMPARE(mTyped->source().kind, Kind::ended);
    mTyped->listen(nullptr);
    QCOMPARE(mTyped->source().kind, Kind::window);
}

QTEST_MAIN(TypedKeysTest)
#include "typedkeystest.moc"
