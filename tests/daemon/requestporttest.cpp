// SPDX-License-Identifier: MIT
#include "daemon/requestport.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <atomic>
#include <csignal>
#include <mutex>
#include <pthread.h>
#include <semaphore>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Time = std::chrono::microseconds;

class RequestPortTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { QDBusConnection::disconnectFromBus(connectionName); }
    void init();
    void cleanup();
    void takesEachMessageWithItsTime();
    void answersWithNothingAtOnce();
    void messageAfterAStandstillHasNoTime();
    void messageThatWaitedForAStoppedProcessHasNoTime();
    void longSilenceIsNoStandstill();
    void takenNameIsReported();

private:
    static inline const QString connectionName = u"the daemon's"_s;

    /// A port whose clock stands until the test sets it.
    [[nodiscard]] std::unique_ptr<RequestPort> makePort(std::chrono::milliseconds tick);
    /// Sends the messages one after the other, each when the one before has been answered.
    static void sendInTurn(const std::vector<qint32> &numbers)
    {
        for (const qint32 number : numbers) {
            const auto remote = RemoteMessagePort::open(DaemonProtocol::requestPortName);
            QVERIFY(remote && remote->sendRequest(number, "x", 20s, 20s) == RemoteMessagePort::SendStatus::success);
        }
    }
    /// Whether the port gives a message that is sent now the time that its clock shows.
    [[nodiscard]] bool hasTime(qint32 number)
    {
        sendInTurn({number});
        return taken().back().number == number && taken().back().readAt == Time(mNow);
    }
    [[nodiscard]] std::vector<RequestMessage> taken()
    {
        const std::scoped_lock lock(mMutex);
        return mTaken;
    }

    std::atomic<Time::rep> mNow;
    std::atomic<Time::rep> mSeen;                           // what the port has last read of it
    std::function<void(const RequestMessage &)> mOnMessage; // on the port's thread
    std::mutex mMutex;
    std::vector<RequestMessage> mTaken;
};

void RequestPortTest::initTestCase()
{
    // Not the client's own: QtDBus takes a short cut from a connection to itself.
    QVERIFY(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName).isConnected());
}

void RequestPortTest::init()
{
    mNow = Time(1h).count();
}

void RequestPortTest::cleanup()
{
    mOnMessage = {};
    mTaken.clear();
}

std::unique_ptr<RequestPort> RequestPortTest::makePort(std::chrono::milliseconds tick)
{
    const auto take = [this](const RequestMessage &message) {
        if (mOnMessage)
            mOnMessage(message);
        const std::scoped_lock lock(mMutex);
        mTaken.push_back(message);
    };
    const auto now = [this] { return Time(mSeen = mNow.load()); };
    return std::make_unique<RequestPort>(QDBusConnection(connectionName), take,
                                         RequestPort::Clock{.now = now, .tick = tick});
}

void RequestPortTest::takesEachMessageWithItsTime()
{
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    sendInTurn({4});
    mNow = Time(1h + 4s).count();
    sendInTurn({6});
    QCOMPARE(taken().size(), size_t(2));
    QCOMPARE(taken().front().number, 4);
    QCOMPARE(taken().front().data, std::optional(QByteArray("x")));
    QVERIFY(taken().front().readAt == Time(1h));
    QCOMPARE(taken().back().number, 6);
    QVERIFY(taken().back().readAt == Time(1h + 4s));
}

void RequestPortTest::answersWithNothingAtOnce()
{
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    QByteArray answer("unset");
    QCOMPARE(RemoteMessagePort::open(DaemonProtocol::requestPortName)->sendRequest(4, "x", 20s, 20s, &answer),
             RemoteMessagePort::SendStatus::success);
    QCOMPARE(answer, QByteArray());
}

void RequestPortTest::messageAfterAStandstillHasNoTime()
{
    const auto port = makePort(1h); // no tick comes, as in a process that stands still
    QVERIFY(port->serve());
    sendInTurn({1});
    mNow = Time(1h + 6s).count();
    QVERIFY(!hasTime(2));
    QTRY_VERIFY(hasTime(3)); // the port has caught up
}

void RequestPortTest::messageThatWaitedForAStoppedProcessHasNoTime()
{
    std::binary_semaphore isTaken(0), isReleased(0);
    std::atomic<pthread_t> thread;
    mOnMessage = [&](const RequestMessage &message) {
        if (message.number == 1) {
            thread = ::pthread_self();
            isTaken.release();
            isReleased.acquire();
        }
    };
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    const auto remote = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(remote);
    remote->post(1, "x");
    isTaken.acquire();
    // The clock does not show the stop. In the daemon no other thread takes the signal; here, that of QTest would.
    QCOMPARE(::pthread_kill(thread, SIGCONT), 0);
    remote->post(2, "x");
    QVERIFY(RemoteMessagePort::open(DaemonProtocol::requestPortName)); // the bus has passed the message on
    isReleased.release();
    QTRY_VERIFY(hasTime(3));
    QVERIFY(taken().at(0).readAt == Time(1h));
    QCOMPARE(taken().at(1).number, 2);
    QVERIFY(!taken().at(1).readAt);
}

void RequestPortTest::longSilenceIsNoStandstill()
{
    const auto port = makePort(1ms);
    QVERIFY(port->serve());
    sendInTurn({1});
    // Ticks come in time while there are any. When they have ended, a gap means nothing.
    for (int step = 0; step < 5; ++step) {
        mNow += Time(4s).count();
        QTRY_COMPARE(mSeen.load(), mNow.load());
    }
    mNow += Time(1h).count();
    sendInTurn({2});
    QCOMPARE(taken().size(), size_t(2));
    QVERIFY(taken().at(1).readAt == Time(mNow));
}

void RequestPortTest::takenNameIsReported()
{
    const auto first = LocalMessagePort::create(
        DaemonProtocol::requestPortName, [](qint32, const std::optional<QByteArray> &data) { return data; },
        QDBusConnection::sessionBus());
    QVERIFY(first);
    QVERIFY(!makePort(1h)->serve());
}

QTEST_GUILESS_MAIN(RequestPortTest)
#include "requestporttest.moc"
