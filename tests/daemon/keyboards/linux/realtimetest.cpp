// SPDX-License-Identifier: MIT
// The request to a simulated RealtimeKit on a private bus. The limit of this process is real.
#include "daemon/keyboards/linux/realtime.h"
#include "tests/support/testmain.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr rlim_t longestRunUs = 200'000;

rlim_t hardLimit()
{
    rlimit limit = {};
    ::getrlimit(RLIMIT_RTTIME, &limit);
    return limit.rlim_max;
}

/// The same limit of any process, as RealtimeKit reads it.
rlim_t hardLimitOf(qulonglong process)
{
    QFile file(u"/proc/%1/limits"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return RLIM_INFINITY;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("Max realtime timeout")) {
            const QByteArray hard = line.simplified().split(' ').value(4);
            return hard == "unlimited" ? RLIM_INFINITY : hard.toULongLong();
        }
    }
    return RLIM_INFINITY;
}

} // namespace

/// Grants the priority by RealtimeKit's rule, unless it refuses everything.
class StandInRealtimeKit : public QDBusVirtualObject
{
    Q_OBJECT

public:
    bool mIsRefusing = false;
    QList<qulonglong> mProcesses; // of the requests
    QList<qulonglong> mThreads;

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == "Get"_L1)
            return connection.send(
                message.createReply(QVariant::fromValue(QDBusVariant(static_cast<qlonglong>(longestRunUs)))));
        const bool isOther = message.member() == "MakeThreadRealtimeWithPID"_L1;
        mProcesses += isOther ? message.arguments().value(0).toULongLong() : static_cast<qulonglong>(::getpid());
        mThreads += message.arguments().value(isOther ? 1 : 0).toULongLong();
        const bool isGranted = !mIsRefusing && hardLimitOf(mProcesses.last()) <= longestRunUs;
        return connection.send(isGranted ? message.createReply()
                                         : message.createErrorReply(QDBusError::AccessDenied, u"no"_s));
    }
};

class RealtimeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void readsThePolicyOfTheThread();
    void limitStaysWithoutABus();
    void limitStaysWithoutRealtimeKit();
    void limitStaysAfterARefusal();
    void limitFallsWithTheGrant(); // last: only root can raise it again

private:
    /// The answer to a request for this thread.
    [[nodiscard]] bool isGranted(const QDBusConnection &bus = QDBusConnection::sessionBus())
    {
        std::optional<bool> answer;
        Realtime::askRealtimeKit(bus, Realtime::currentThread(), this, [&](bool isGranted) { answer = isGranted; });
        [&] { QTRY_VERIFY(answer); }();
        return answer.value_or(false);
    }

    StandInRealtimeKit mKit;
};

void RealtimeTest::init()
{
    QVERIFY(hardLimit() > longestRunUs);
    mKit.mIsRefusing = false;
    mKit.mProcesses.clear();
    mKit.mThreads.clear();
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"kit"_s);
    QVERIFY(bus.registerVirtualObject(u"/org/freedesktop/RealtimeKit1"_s, &mKit));
    QVERIFY(bus.registerService(u"org.freedesktop.RealtimeKit1"_s));
}

void RealtimeTest::cleanup()
{
    QDBusConnection(u"kit"_s).unregisterService(u"org.freedesktop.RealtimeKit1"_s);
    QDBusConnection::disconnectFromBus(u"kit"_s);
}

void RealtimeTest::readsThePolicyOfTheThread()
{
    const pid_t thread = Realtime::currentThread();
    QVERIFY(!Realtime::isRealTime(thread));
    if (!Realtime::raiseCurrentThread())
        QSKIP("the system does not allow real-time priority");
    QVERIFY(Realtime::isRealTime(thread));
    const sched_param ordinary = {};
    QCOMPARE(::sched_setscheduler(0, SCHED_OTHER | SCHED_RESET_ON_FORK, &ordinary), 0); // as RealtimeKit does
    QVERIFY(!Realtime::isRealTime(thread));
}

void RealtimeTest::limitStaysWithoutABus()
{
    const rlim_t before = hardLimit();
    QVERIFY(!isGranted(QDBusConnection(u"none"_s)));
    QCOMPARE(hardLimit(), before);
}

void RealtimeTest::limitStaysWithoutRealtimeKit()
{
    QDBusConnection(u"kit"_s).unregisterService(u"org.freedesktop.RealtimeKit1"_s);
    const rlim_t before = hardLimit();
    QVERIFY(!isGranted());
    QCOMPARE(hardLimit(), before);
    QCOMPARE(mKit.mProcesses.size(), 0);
}

void RealtimeTest::limitStaysAfterARefusal()
{
    mKit.mIsRefusing = true;
    const rlim_t before = hardLimit();
    QVERIFY(!isGranted());
    QCOMPARE(hardLimit(), before);
    QCOMPARE(mKit.mProcesses.size(), 1);
    const auto other = static_cast<pid_t>(mKit.mProcesses.first());
    QVERIFY(other != ::getpid());
    QTRY_VERIFY(::kill(other, 0) != 0 && errno == ESRCH);
}

void RealtimeTest::limitFallsWithTheGrant()
{
    QVERIFY(isGranted());
    QCOMPARE(hardLimit(), longestRunUs);
    QCOMPARE(mKit.mProcesses.size(), 2);
    QCOMPARE(mKit.mThreads.last(), static_cast<qulonglong>(Realtime::currentThread()));
    const auto other = static_cast<pid_t>(mKit.mProcesses.first());
    QTRY_VERIFY(::kill(other, 0) != 0 && errno == ESRCH);
    // The limit is low now, so another request needs no trial.
    QVERIFY(isGranted());
    QCOMPARE(mKit.mProcesses.size(), 3);
}

QTEST_GUILESS_MAIN(RealtimeTest)
#include "realtimetest.moc"
