// SPDX-License-Identifier: MIT
// The keyboards that the window shows, with simulated keyboards behind the daemon's own object.
#include "app/devicesstatus.h"

#include "base/daemonprotocol.h"
#include "daemon/keyboards/devicesadaptor.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class DevicesStatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void unknownWithoutADaemon();
    void showsTheKeyboardsInUse();
    void distinguishesKeyboardsOfOneName();
    void followsTheDaemon();
    void startAsksWithoutWaiting();

private:
    [[nodiscard]] static QDBusConnection daemonBus() { return openSessionBus(u"daemon"_s); }
    void appear();
    void disappear();

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mObject;
    std::unique_ptr<DevicesStatus> mStatus;
};

void DevicesStatusTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mDevices = std::make_unique<ScriptedDevices>();
    mChoice = std::make_unique<DeviceChoice>(mFolder->path());
    mObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
    mStatus = std::make_unique<DevicesStatus>();
}

void DevicesStatusTest::cleanup()
{
    mStatus.reset();
    disappear();
    mObject.reset();
    mChoice.reset();
    mDevices.reset();
}

void DevicesStatusTest::appear()
{
    QVERIFY(mObject->registerOn(daemonBus()));
    QVERIFY(daemonBus().registerService(messagePortBusName(DaemonProtocol::requestPortName)));
}

void DevicesStatusTest::disappear()
{
    daemonBus().unregisterService(messagePortBusName(DaemonProtocol::requestPortName));
    daemonBus().unregisterObject(DeviceKeys::objectPath);
}

void DevicesStatusTest::unknownWithoutADaemon()
{
    const QSignalSpy changed(mStatus.get(), &DevicesStatus::changed);
    mStatus->start();
    appear(); // a later question is answered after the one above
    mStatus->read();
    QTRY_VERIFY(mStatus->keyboards());
    QCOMPARE(changed.size(), 1);
}

void DevicesStatusTest::showsTheKeyboardsInUse()
{
    appear();
    mStatus->start();
    QTRY_VERIFY(mStatus->keyboards());
    QCOMPARE(*mStatus->keyboards(), (KeyboardsInUse{.state = u"released"_s, .names = {}}));
    mDevices->plug({ScriptedDevices::keyboard(1), ScriptedDevices::keyboard(2), ScriptedDevices::keyboard(3)});
    QVERIFY(mDevices->use({u"1b2c:0002"_s}));
    QTRY_COMPARE(*mStatus->keyboards(), (KeyboardsInUse{.state = u"in use"_s, .names = {u"Keyboard 2"_s}}));
    QVERIFY(mDevices->use({u"1b2c:0001"_s, u"1b2c:0003"_s}));
    QTRY_COMPARE(mStatus->keyboards()->names, QStringList({u"Keyboard 1"_s, u"Keyboard 3"_s}));
    mDevices->plug({});
    QTRY_COMPARE(*mStatus->keyboards(), (KeyboardsInUse{.state = u"absent"_s, .names = {}}));
}

void DevicesStatusTest::distinguishesKeyboardsOfOneName()
{
    InputDevice other = ScriptedDevices::keyboard(2);
    other.name = u"Keyboard 1"_s;
    mDevices->plug({ScriptedDevices::keyboard(1), other});
    QVERIFY(mDevices->use({u"1b2c:0002"_s}));
    appear();
    mStatus->start();
    QTRY_VERIFY(mStatus->keyboards());
    QCOMPARE(mStatus->keyboards()->names, QStringList{u"Keyboard 1 1b2c:0002"_s});
}

void DevicesStatusTest::followsTheDaemon()
{
    mStatus->start();
    appear();
    mStatus->read();
    QTRY_VERIFY(mStatus->keyboards());
    disappear();
    mStatus->read();
    QTRY_VERIFY(!mStatus->keyboards());
}

void DevicesStatusTest::startAsksWithoutWaiting()
{
    appear(); // on this thread: it could not answer a caller that waits
    mStatus->start();
    QVERIFY(!mStatus->keyboards());
    QTRY_VERIFY(mStatus->keyboards());
}

QTEST_GUILESS_MAIN(DevicesStatusTest)
#include "devicesstatustest.moc"
