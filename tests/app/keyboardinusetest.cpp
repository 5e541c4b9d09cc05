// SPDX-License-Identifier: MIT
// The window's knowledge of the keyboards in use, from a daemon with simulated keyboards that starts, changes and ends.
#include "app/keyboardinuse.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "platform/sessionbus.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyboardInUseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nothingIsKnownWithoutADaemon();
    void learnsTheKeyboardOfARunningDaemon();
    void followsADaemonThatStartsLaterAndEnds();
    void followsTheChoiceOfKeyboards();
    void reportsWhyAChosenKeyboardIsNotInUse();
    void knowsNothingFromAStrangeAnswer_data();
    void knowsNothingFromAStrangeAnswer();

private:
    void startDaemon();
    void endDaemon();

    QTemporaryDir mFolder;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mObject;
};

namespace {

const QString daemonName = u"org.quillkestra.QuillCoreEngineMsgPort"_s;

/// An object in the place of the daemon's, which answers with a text.
class StrangeDevices : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.Devices")

public Q_SLOTS:
    [[nodiscard]] QString Status() const { return u"released"_s; }
};

} // namespace

void KeyboardInUseTest::init()
{
    mDevices = std::make_unique<ScriptedDevices>();
    mDevices->plug({ScriptedDevices::keyboard(1), ScriptedDevices::keyboard(2)});
    mChoice = std::make_unique<DeviceChoice>(mFolder.path());
    mObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
}

void KeyboardInUseTest::cleanup()
{
    endDaemon();
    mObject.reset();
    mChoice.reset();
    mDevices.reset();
}

void KeyboardInUseTest::startDaemon()
{
    QVERIFY(mObject->registerOn(QDBusConnection::sessionBus()));
    QVERIFY(QDBusConnection::sessionBus().registerService(daemonName));
}

void KeyboardInUseTest::endDaemon()
{
    QDBusConnection::sessionBus().unregisterService(daemonName);
    QDBusConnection::sessionBus().unregisterObject(DeviceKeys::objectPath);
}

void KeyboardInUseTest::nothingIsKnownWithoutADaemon()
{
    const KeyboardInUse keyboard(sharedSessionBus());
    QCOMPARE(keyboard.state(), QString());
    QVERIFY(!keyboard.isVirtual());
    QVERIFY(keyboard.names().isEmpty());
}

void KeyboardInUseTest::learnsTheKeyboardOfARunningDaemon()
{
    startDaemon();
    // The daemon of the test answers on this thread: an object that waited for it would wait in vain.
    const KeyboardInUse keyboard(sharedSessionBus());
    QCOMPARE(keyboard.state(), QString());
    QTRY_VERIFY(keyboard.isVirtual());
    QCOMPARE(keyboard.state(), QString(DeviceKeys::stateReleased));
    QVERIFY(keyboard.names().isEmpty());
}

void KeyboardInUseTest::followsADaemonThatStartsLaterAndEnds()
{
    const KeyboardInUse keyboard(sharedSessionBus());
    const QSignalSpy changes(&keyboard, &KeyboardInUse::changed);
    for (int start = 0; start < 2; ++start) {
        startDaemon();
        QTRY_VERIFY(keyboard.isVirtual());
        endDaemon();
        QTRY_COMPARE(keyboard.state(), QString());
        QVERIFY(!keyboard.isVirtual());
    }
    QCOMPARE(changes.size(), 4);
}

void KeyboardInUseTest::followsTheChoiceOfKeyboards()
{
    startDaemon();
    const KeyboardInUse keyboard(sharedSessionBus());
    QTRY_VERIFY(keyboard.isVirtual());
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0002"_s}));
    QTRY_COMPARE(keyboard.names(), QStringList({u"Keyboard 1"_s, u"Keyboard 2"_s}));
    QCOMPARE(keyboard.state(), QString(DeviceKeys::stateInUse));
    QVERIFY(!keyboard.isVirtual());
    mDevices->plug({ScriptedDevices::keyboard(2)});
    QTRY_COMPARE(keyboard.names(), QStringList{u"Keyboard 2"_s});
    mDevices->plug({});
    QTRY_COMPARE(keyboard.state(), QString(DeviceKeys::stateAbsent));
    QVERIFY(!keyboard.isVirtual()); // the choice is kept
    mDevices->release();
    QTRY_VERIFY(keyboard.isVirtual());
}

void KeyboardInUseTest::reportsWhyAChosenKeyboardIsNotInUse()
{
    startDaemon();
    const KeyboardInUse keyboard(sharedSessionBus());
    DeviceStatus status;
    status.state = DeviceState::failed;
    status.problem = u"No right to it."_s;
    mDevices->setStatus(status);
    Q_EMIT mDevices->changed();
    QTRY_COMPARE(keyboard.problem(), u"No right to it."_s);
    QCOMPARE(keyboard.state(), QString(DeviceKeys::stateFailed));
    QVERIFY(!keyboard.isVirtual());
}

void KeyboardInUseTest::knowsNothingFromAStrangeAnswer_data()
{
    QTest::addColumn<bool>("hasObject");
    QTest::newRow("no such object") << false;
    QTest::newRow("a text") << true;
}

void KeyboardInUseTest::knowsNothingFromAStrangeAnswer()
{
    QFETCH(bool, hasObject);
    StrangeDevices strange;
    if (hasObject) {
        QVERIFY(QDBusConnection::sessionBus().registerObject(DeviceKeys::objectPath, &strange,
                                                             QDBusConnection::ExportAllSlots));
    }
    QVERIFY(QDBusConnection::sessionBus().registerService(daemonName));
    const KeyboardInUse keyboard(sharedSessionBus());
    // The answer to a later question comes later.
    const QDBusPendingCallWatcher later(sharedSessionBus().asyncCall(
        QDBusMessage::createMethodCall(daemonName, DeviceKeys::objectPath, DeviceKeys::interfaceName, u"Status"_s)));
    const QSignalSpy answers(&later, &QDBusPendingCallWatcher::finished);
    QTRY_COMPARE(answers.size(), 1);
    QCOMPARE(later.reply().type() == QDBusMessage::ReplyMessage, hasObject);
    QCOMPARE(keyboard.state(), QString());
    QVERIFY(!keyboard.isVirtual());
}

QTEST_GUILESS_MAIN(KeyboardInUseTest)
#include "keyboardinusetest.moc"
