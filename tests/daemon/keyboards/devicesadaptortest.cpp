// SPDX-License-Identifier: MIT
// The object /Devices for a client on the bus, with simulated keyboards.
#include "daemon/keyboards/devicesadaptor.h"
#include "tests/support/testmain.h"

#include "tests/support/scripteddevices.h"

#include <QDBusAbstractInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// QtDBus connects the signal that it declares to that of the object.
class DevicesProxy : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    explicit DevicesProxy(const QDBusConnection &connection)
        : QDBusAbstractInterface(QDBusConnection::sessionBus().baseService(), u"/Devices"_s, "org.quillkestra.Devices",
                                 connection, nullptr)
    {
    }

Q_SIGNALS:
    void Changed();
};

class DevicesAdaptorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listReportsEachKeyboard();
    void useIsDoneAndStored();
    void useOfSeveralReplacesEarlierOnes();
    void failedUseReportsTheReasonAndStoresNothing_data();
    void failedUseReportsTheReasonAndStoresNothing();
    void useBesideOthersIsDoneAndStored();
    void releaseOfOneIsDoneAndStored();
    void releaseIsDoneAndStored();
    void unstoredChoiceIsReported();
    void statusReportsEverything();
    void changesAreAnnounced();

private:
    /// The reply to a call over the bus; this thread serves it.
    QDBusMessage call(const QString &method, const QVariantList &arguments = {});
    QList<ChosenDevice> kept() const { return DeviceChoice(mFolder->path()).load(); }

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<ScriptedDevices> mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<DevicesObject> mObject;
    QDBusConnection mClient{QString()};
};

void DevicesAdaptorTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mDevices = std::make_unique<ScriptedDevices>();
    mDevices->plug({ScriptedDevices::keyboard(1, u"S1"_s), ScriptedDevices::keyboard(2)});
    mChoice = std::make_unique<DeviceChoice>(mFolder->path());
    mObject = std::make_unique<DevicesObject>(*mDevices, *mChoice);
    QVERIFY(mObject->registerOn(QDBusConnection::sessionBus()));
    mClient = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"client"_s);
    QVERIFY(mClient.isConnected());
}

void DevicesAdaptorTest::cleanup()
{
    QDBusConnection::disconnectFromBus(u"client"_s);
    mClient = QDBusConnection(QString());
    mObject.reset();
    mChoice.reset();
    mDevices.reset();
    mFolder.reset();
}

QDBusMessage DevicesAdaptorTest::call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(), u"/Devices"_s,
                                                          u"org.quillkestra.Devices"_s, method);
    message.setArguments(arguments);
    QDBusPendingCallWatcher watcher(mClient.asyncCall(message));
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    return watcher.isFinished() || finished.wait() ? watcher.reply() : QDBusMessage();
}

void DevicesAdaptorTest::listReportsEachKeyboard()
{
    InputDevice broken = ScriptedDevices::keyboard(2);
    broken.problem = u"No right to it."_s;
    broken.obstacle = DeviceObstacle::noRight;
    mDevices->plug({ScriptedDevices::keyboard(1, u"S1"_s), broken});
    const QDBusMessage reply = call(u"List"_s);
    QCOMPARE(reply.signature(), u"aa{sv}"_s);
    const auto list = qdbus_cast<QList<QVariantMap>>(reply.arguments().value(0));
    QCOMPARE(list.size(), 2);
    const QVariantMap expected{{u"Id"_s, u"1b2c:0001"_s},  {u"Name"_s, u"Keyboard 1"_s},
                               {u"Kind"_s, u"keyboard"_s}, {u"Vendor"_s, ushort(0x1b2c)},
                               {u"Product"_s, ushort(1)},  {u"Serial"_s, u"S1"_s},
                               {u"Path"_s, u"port-1"_s},   {u"Nodes"_s, QStringList{u"/dev/input/event1"_s}},
                               {u"InUse"_s, false},        {u"State"_s, u"released"_s},
                               {u"Problem"_s, u""_s},      {u"Obstacle"_s, u""_s}};
    QCOMPARE(list.at(0), expected);
    QCOMPARE(list.at(1).value(u"Problem"_s), QVariant(u"No right to it."_s));
    QCOMPARE(list.at(1).value(u"Obstacle"_s), QVariant(u"no right"_s));
}

void DevicesAdaptorTest::useIsDoneAndStored()
{
    QCOMPARE(call(u"Use"_s, {QStringList{u"1b2c:0001"_s}}).type(), QDBusMessage::ReplyMessage);
    QVERIFY(mDevices->devices().at(0).isInUse);
    QVERIFY(!mDevices->devices().at(1).isInUse);
    QCOMPARE(kept(), QList<ChosenDevice>{choiceOf(mDevices->devices().at(0))});
}

void DevicesAdaptorTest::useOfSeveralReplacesEarlierOnes()
{
    mDevices->plug({ScriptedDevices::keyboard(1), ScriptedDevices::keyboard(2), ScriptedDevices::keyboard(3)});
    QCOMPARE(call(u"Use"_s, {QStringList{u"1b2c:0001"_s}}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(u"Use"_s, {QStringList{u"1b2c:0003"_s, u"1b2c:0002"_s}}).type(), QDBusMessage::ReplyMessage);
    QVERIFY(!mDevices->devices().at(0).isInUse);
    QVERIFY(mDevices->devices().at(1).isInUse);
    QVERIFY(mDevices->devices().at(2).isInUse);
    QCOMPARE(kept().size(), 2);
}

void DevicesAdaptorTest::failedUseReportsTheReasonAndStoresNothing_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QStringList() << u"org.freedesktop.DBus.Error.InvalidArgs"_s << u"no keyboard is named"_s;
    QTest::newRow("unknown") << QStringList{u"1b2c:0009"_s} << u"org.quillkestra.Devices.Error.Unknown"_s
                             << u"There is no keyboard \"1b2c:0009\"."_s;
    QTest::newRow("one of two unknown") << QStringList{u"1b2c:0001"_s, u"x"_s}
                                        << u"org.quillkestra.Devices.Error.Unknown"_s
                                        << u"There is no keyboard \"x\"."_s;
    QTest::newRow("refused") << QStringList{u"1b2c:0003"_s} << u"org.quillkestra.Devices.Error.Refused"_s
                             << u"No right to it. Remedy."_s;
}

void DevicesAdaptorTest::failedUseReportsTheReasonAndStoresNothing()
{
    InputDevice broken = ScriptedDevices::keyboard(3);
    broken.problem = u"No right to it. Remedy."_s;
    mDevices->plug({ScriptedDevices::keyboard(1), broken});
    QFETCH(QStringList, ids);
    const QDBusMessage reply = call(u"Use"_s, {ids});
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QTEST(reply.errorName(), "error");
    QTEST(reply.errorMessage(), "text");
    QVERIFY(mDevices->choices().isEmpty());
    QVERIFY(kept().isEmpty());
}

void DevicesAdaptorTest::useBesideOthersIsDoneAndStored()
{
    QCOMPARE(call(u"Use"_s, {QStringList{u"1b2c:0001"_s}}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(u"UseAlso"_s, {QStringList()}).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    QCOMPARE(call(u"UseAlso"_s, {QStringList{u"x"_s}}).errorName(), u"org.quillkestra.Devices.Error.Unknown"_s);
    QCOMPARE(kept().size(), 1);
    QCOMPARE(call(u"UseAlso"_s, {QStringList{u"1b2c:0002"_s}}).type(), QDBusMessage::ReplyMessage);
    const auto list = qdbus_cast<QList<QVariantMap>>(call(u"List"_s).arguments().value(0));
    QCOMPARE(list.value(0).value(u"State"_s), QVariant(u"in use"_s));
    QCOMPARE(list.value(1).value(u"State"_s), QVariant(u"in use"_s));
    QCOMPARE(kept(), mDevices->choices());
    QCOMPARE(kept().size(), 2);
}

void DevicesAdaptorTest::releaseOfOneIsDoneAndStored()
{
    QCOMPARE(call(u"Use"_s, {QStringList{u"1b2c:0001"_s, u"1b2c:0002"_s}}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(u"ReleaseThese"_s, {QStringList()}).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    QCOMPARE(call(u"ReleaseThese"_s, {QStringList{u"x"_s}}).errorName(), u"org.quillkestra.Devices.Error.Unknown"_s);
    QCOMPARE(call(u"ReleaseThese"_s, {QStringList{u"1b2c:0001"_s}}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(kept(), QList<ChosenDevice>{choiceOf(mDevices->devices().at(1))});
    mDevices->plug({});
    const auto status = qdbus_cast<QVariantMap>(call(u"Status"_s).arguments().value(0));
    QCOMPARE(status.value(u"Absent"_s), QVariant(QStringList{u"1b2c:0002:port-2"_s}));
    QCOMPARE(call(u"ReleaseThese"_s, {QStringList{u"1b2c:0002:port-2"_s}}).type(), QDBusMessage::ReplyMessage);
    QVERIFY(kept().isEmpty());
}

void DevicesAdaptorTest::releaseIsDoneAndStored()
{
    QCOMPARE(call(u"Use"_s, {QStringList{u"1b2c:0001"_s}}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(u"Release"_s).type(), QDBusMessage::ReplyMessage);
    QVERIFY(!mDevices->devices().at(0).isInUse);
    QVERIFY(kept().isEmpty());
    QCOMPARE(call(u"Release"_s).type(), QDBusMessage::ReplyMessage); // succeeds without a grabbed keyboard
}

void DevicesAdaptorTest::unstoredChoiceIsReported()
{
    QVERIFY(QDir().rmdir(mFolder->path()));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write .*devices.plist"_s));
    const QDBusMessage reply = call(u"Use"_s, {QStringList{u"1b2c:0001"_s}});
    QCOMPARE(reply.errorName(), u"org.quillkestra.Devices.Error.NotKept"_s);
    QVERIFY(reply.errorMessage().contains(u"done"_s));
    QVERIFY(mDevices->devices().at(0).isInUse);
}

void DevicesAdaptorTest::statusReportsEverything()
{
    DeviceStatus counters;
    counters.problem = u"One of two has gone."_s;
    counters.isRealTime = true;
    counters.lostEvents = 3;
    counters.latency = {.count = Q_UINT64_C(5'000'000'000), .p50Us = 40, .p99Us = 200, .maximumUs = 4'000'000'000U};
    mDevices->setCounters(counters);
    QVERIFY(mDevices->use({u"1b2c:0002"_s}));
    const auto status = qdbus_cast<QVariantMap>(call(u"Status"_s).arguments().value(0));
    const QVariantMap expected{{u"State"_s, u"in use"_s},
                               {u"Names"_s, QStringList{u"Keyboard 2"_s}},
                               {u"Absent"_s, QStringList()},
                               {u"Grabs"_s, QStringList{u"/dev/input/event2"_s}},
                               {u"Problem"_s, u"One of two has gone."_s},
                               {u"RealTime"_s, true},
                               {u"LostEvents"_s, Q_UINT64_C(3)},
                               {u"LatencyCount"_s, Q_UINT64_C(5'000'000'000)},
                               {u"LatencyP50Us"_s, 40U},
                               {u"LatencyP99Us"_s, 200U},
                               {u"LatencyMaximumUs"_s, 4'000'000'000U}};
    QCOMPARE(status, expected);
}

void DevicesAdaptorTest::changesAreAnnounced()
{
    DevicesProxy proxy(mClient);
    QSignalSpy announcements(&proxy, &DevicesProxy::Changed);
    mDevices->plug({ScriptedDevices::keyboard(1)});
    QTRY_COMPARE(announcements.size(), 1);
}

QTEST_GUILESS_MAIN(DevicesAdaptorTest)
#include "devicesadaptortest.moc"
