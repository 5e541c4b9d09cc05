// SPDX-License-Identifier: MIT
// The reply port's thread: its beginning, its end, and its work beside a blocked main thread.
#include "daemonlink/replyport.h"
#include "daemonlink/latestreplyslot.h"
#include "tests/support/scripteddaemon.h"
#include "tests/support/testmain.h"
#include "tests/support/threadedport.h"

#include <QDBusConnectionInterface>
#include <QtTest>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString portName = u"TestReplyPort"_s;
constexpr int limitMs = 10'000;

QString ownerOf(const QString &name)
{
    return QDBusConnection::sessionBus().interface()->serviceOwner(messagePortBusName(name));
}

QByteArray someReply()
{
    return ScriptedDaemon::encoded({{u"ReturnStatus"_s, 0}});
}

} // namespace

class ReplyPortTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { LatestReplySlot::shared().clear(); }
    void servesOnASeparateConnection();
    void servesWhileTheMainThreadIsBlocked();
    void endFreesTheName();
    void canEndDirectlyAfterTheStart();
    void endsWithoutHavingBeenStarted();
    void continuesSilentlyWhenTheNameIsTaken();
    void twoPortsOfOneProcessFeedOneSlot();
    void serviceContinuesAfterALargeMessage();
};

void ReplyPortTest::servesOnASeparateConnection()
{
    ReplyPort port(portName);
    port.start();
    QVERIFY(port.waitUntilServing(limitMs));
    QVERIFY(!ownerOf(portName).isEmpty());
    QVERIFY(ownerOf(portName) != QDBusConnection::sessionBus().baseService());
    QVERIFY(port.isRunning());
}

void ReplyPortTest::servesWhileTheMainThreadIsBlocked()
{
    ScriptedDaemon daemon;
    ReplyPort port(portName);
    port.start();
    QVERIFY(port.waitUntilServing(limitMs));
    // Blocks the main thread, with no event loop, until the port has answered.
    QCOMPARE(daemon.sendToReplyPort(portName, 4, someReply()), someReply());
    QVERIFY(LatestReplySlot::shared().holdsReply());
}

void ReplyPortTest::endFreesTheName()
{
    {
        ReplyPort port(portName);
        port.start();
        QVERIFY(port.waitUntilServing(limitMs));
    }
    QCOMPARE(ownerOf(portName), QString());
    ReplyPort again(portName);
    again.start();
    QVERIFY(again.waitUntilServing(limitMs));
}

void ReplyPortTest::canEndDirectlyAfterTheStart()
{
    for (int i = 0; i < 30; ++i) {
        ReplyPort port(portName);
        port.start(); // a quit before the thread's event loop runs must not be lost
    }
    QCOMPARE(ownerOf(portName), QString());
}

void ReplyPortTest::endsWithoutHavingBeenStarted()
{
    ReplyPort port(portName);
    QVERIFY(!port.isRunning());
    QVERIFY(!port.waitUntilServing(1));
}

void ReplyPortTest::continuesSilentlyWhenTheNameIsTaken()
{
    std::atomic<int> received = 0;
    ScriptedDaemon daemon;
    {
        const ThreadedPort other(portName, [&](qint32, const std::optional<QByteArray> &) {
            ++received;
            return QByteArray("other");
        });
        ReplyPort port(portName);
        port.start();
        QVERIFY(!port.waitUntilServing(limitMs));
        QVERIFY(port.isRunning());
        QCOMPARE(daemon.sendToReplyPort(portName, 4, someReply()), QByteArray("other"));
    }
    QCOMPARE(received.load(), 1);
    QVERIFY(!LatestReplySlot::shared().holdsReply());
}

void ReplyPortTest::twoPortsOfOneProcessFeedOneSlot()
{
    ScriptedDaemon daemon;
    ReplyPort first(portName);
    ReplyPort second(u"OtherReplyPort"_s);
    first.start();
    second.start();
    QVERIFY(first.waitUntilServing(limitMs));
    QVERIFY(second.waitUntilServing(limitMs));
    daemon.sendToReplyPort(portName, 1, ScriptedDaemon::encoded({{u"n"_s, 1}}));
    daemon.sendToReplyPort(u"OtherReplyPort"_s, 1, ScriptedDaemon::encoded({{u"n"_s, 2}}));
    QCOMPARE(LatestReplySlot::shared().take(), (QVariantMap{{u"n"_s, 2}}));
}

void ReplyPortTest::serviceContinuesAfterALargeMessage()
{
    ScriptedDaemon daemon;
    ReplyPort port(portName);
    port.start();
    QVERIFY(port.waitUntilServing(limitMs));
    const QByteArray large(64 * 1024 * 1024, 'x'); // the limit of the bus; not a property list
    QCOMPARE(daemon.sendToReplyPort(portName, 4, large), large);
    QCOMPARE(LatestReplySlot::shared().take(), QVariantMap());
    QCOMPARE(daemon.sendToReplyPort(portName, 4, someReply()), someReply());
    QVERIFY(LatestReplySlot::shared().holdsReply());
}

QTEST_GUILESS_MAIN(ReplyPortTest)
#include "replyporttest.moc"
