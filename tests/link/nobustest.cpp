// SPDX-License-Identifier: MIT
// A process without a session bus: every part of the link fails quietly, without a hang or a crash.
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "daemonlink/replyport.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class NoBusTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(!QDBusConnection::sessionBus().isConnected()); }
    void requestIsDropped();
    void portIsNotServed();
    void notificationsAreNotDelivered();
};

void NoBusTest::requestIsDropped()
{
    setReplyPollInterval(100us);
    QVERIFY(!RemoteMessagePort::open(u"QuillCoreEngineMsgPort"_s));
    QCOMPARE(sendDaemonRequest(QVariantMap{{u"ProductID"_s, 271}}, 4), -50);
    waitForReply();
    QVERIFY(!LatestReplySlot::shared().holdsReply());
}

void NoBusTest::portIsNotServed()
{
    ReplyPort port(u"TestReplyPort"_s);
    port.start();
    QVERIFY(!port.waitUntilServing(10'000));
    QVERIFY(port.isRunning());
}

void NoBusTest::notificationsAreNotDelivered()
{
    QObject observer;
    bool wasCalled = false;
    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    center.addObserver(&observer, u"name"_s, [&](const DistributedNotification &) { wasCalled = true; });
    center.post(u"name"_s, {{u"a"_s, 1}});
    QCoreApplication::processEvents();
    QVERIFY(!wasCalled);
    center.removeObserver(&observer, u"name"_s);
    QCOMPARE(center.observationCount(&observer, u"name"_s), 0);
}

int main(int argc, char *argv[])
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    QCoreApplication application(argc, argv);
    NoBusTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "nobustest.moc"
