// SPDX-License-Identifier: MIT
#include "daemon/requestport.h"

#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
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
    void stampsEachMessageWithItsTime();
    void answersAtOnceWithoutData();
    void messageAfterASuspensionHasNoTime();
    void messageForAStoppedProcessHasNoTime();
    void longSilenceIsNotASuspension();
    void takenNameIsReported();
    void refusedMessageIsAnswered();
    void replyPortOfALargeRefusedMessageIsNotLookedUp();
    void refusedMessageOfASuspensionHasNoReply();
    void messagesNameTheirSender();

private:
    static inline const QString connectionName = u"the daemon's"_s;

    /// A port whose clock changes only when the test sets it.
    [[nodiscard]] std::unique_ptr<RequestPort> makePort(std::chrono::milliseconds tick);
    /// The test's reply port, which adds the numbers of the replies to `replied`.
    [[nodiscard]] static std::unique_ptr<LocalMessagePort> recordReplies(QList<qint32> &replied)
    {
        const auto record = [&replied](qint32 number, const std::optional<QByteArray> &data) {
            replied += number;
            return data;
        };
        return LocalMessagePort::create(replyPortName, record, QDBusConnection::sessionBus());
    }
    /// Sends the messages in turn, each after the answer to the one before.
    static void sendInTurn(const std::vector<qint32> &numbers)
    {
        for (const qint32 number : numbers) {
            const auto remote = RemoteMessagePort::open(DaemonProtocol::requestPortName);
            QVERIFY(remote && remote->sendRequest(number, "x", 20s, 20s));
        }
    }
    /// Whether the port stamps a message that is sent now with the time of its clock.
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

    /// The answer to a request that names the test's reply port.
    [[nodiscard]] static QByteArray answerTo(qint32 number, QVariantMap request)
    {
        request.insert(u"ResponseMsgPortName"_s, replyPortName);
        const auto remote = RemoteMessagePort::open(DaemonProtocol::requestPortName);
        const auto data = QlCoreUtility::convertDictionaryToData(request);
        if (!remote)
            qFatal("no port");
        const auto answer = remote->sendRequest(number, data.value(), 20s, 20s);
        if (!answer)
            qFatal("no answer");
        return *answer;
    }

    static inline const QString replyPortName = u"RequestPortTestReplyPort"_s;

    std::atomic<Time::rep> mNow;
    std::atomic<Time::rep> mSeen;                           // the time that the port last read
    std::function<void(const RequestMessage &)> mOnMessage; // on the port's thread
    std::mutex mMutex;
    std::vector<RequestMessage> mTaken;
    QString mSender;                          // of the last message
    std::atomic<Status> mStatus = Status::ok; // for the next messages
};

void RequestPortTest::initTestCase()
{
    // A separate connection, because QtDBus takes a short cut from a connection to itself.
    QVERIFY(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName).isConnected());
}

void RequestPortTest::init()
{
    mNow = Time(1h).count();
}

void RequestPortTest::cleanup()
{
    mOnMessage = {};
    mStatus = Status::ok;
    mTaken.clear();
}

std::unique_ptr<RequestPort> RequestPortTest::makePort(std::chrono::milliseconds tick)
{
    const auto take = [this](const QString &sender, const RequestMessage &message) {
        if (mOnMessage)
            mOnMessage(message);
        const std::scoped_lock lock(mMutex);
        mTaken.push_back(message);
        mSender = sender;
        return mStatus.load();
    };
    const auto now = [this] { return Time(mSeen = mNow.load()); };
    return std::make_unique<RequestPort>(QDBusConnection(connectionName), take,
                                         RequestPort::Clock{.now = now, .tick = tick});
}

void RequestPortTest::stampsEachMessageWithItsTime()
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

void RequestPortTest::answersAtOnceWithoutData()
{
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    const auto answer = RemoteMessagePort::open(DaemonProtocol::requestPortName)->sendRequest(4, "x", 20s, 20s);
    QVERIFY(answer);
    QCOMPARE(*answer, QByteArray());
}

void RequestPortTest::messageAfterASuspensionHasNoTime()
{
    const auto port = makePort(1h); // no tick comes, as in a suspended process
    QVERIFY(port->serve());
    sendInTurn({1});
    mNow = Time(1h + 6s).count();
    QVERIFY(!hasTime(2));
    QTRY_VERIFY(hasTime(3)); // the port has caught up
}

void RequestPortTest::messageForAStoppedProcessHasNoTime()
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
    // The clock does not show the stop. In the daemon no other thread takes the signal; in this process QTest's thread
    // would.
    QCOMPARE(::pthread_kill(thread, SIGCONT), 0);
    remote->post(2, "x");
    QVERIFY(RemoteMessagePort::open(DaemonProtocol::requestPortName)); // the bus has forwarded the message
    isReleased.release();
    QTRY_VERIFY(hasTime(3));
    QVERIFY(taken().at(0).readAt == Time(1h));
    QCOMPARE(taken().at(1).number, 2);
    QVERIFY(!taken().at(1).readAt);
}

void RequestPortTest::longSilenceIsNotASuspension()
{
    const auto port = makePort(1ms);
    QVERIFY(port->serve());
    sendInTurn({1});
    // Ticks come in time while any are due. After the last tick, a gap means nothing.
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

void RequestPortTest::refusedMessageIsAnswered()
{
    mStatus = Status::busy;
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    qint32 repliedNumber = 0;
    std::optional<QByteArray> reply;
    const auto replyPort = LocalMessagePort::create(
        replyPortName,
        [&](qint32 number, const std::optional<QByteArray> &data) {
            repliedNumber = number;
            reply = data;
            return data;
        },
        QDBusConnection::sessionBus());
    QVERIFY(replyPort);
    const QVariantMap busy{{u"ReturnStatus"_s, 9}};
    QCOMPARE(QlCoreUtility::convertDataToDictionary(answerTo(6, {})), std::optional(busy));
    QTRY_VERIFY(reply);
    QCOMPARE(repliedNumber, 6);
    QCOMPARE(QlCoreUtility::convertDataToDictionary(reply), std::optional(busy));
    mStatus = Status::ok;
    QCOMPARE(answerTo(6, {}), QByteArray());
}

void RequestPortTest::replyPortOfALargeRefusedMessageIsNotLookedUp()
{
    mStatus = Status::busy;
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    QList<qint32> replied;
    const auto replyPort = recordReplies(replied);
    QVERIFY(!answerTo(6, {{u"Data"_s, QByteArray(RequestPort::maximumRefusedBytes, 'x')}}).isEmpty());
    QVERIFY(!answerTo(10, {}).isEmpty());
    QTRY_COMPARE(replied, QList<qint32>{10});
}

void RequestPortTest::refusedMessageOfASuspensionHasNoReply()
{
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    QList<qint32> replied;
    const auto replyPort = recordReplies(replied);
    sendInTurn({1});
    mStatus = Status::busy;
    mNow = Time(1h + 6s).count();
    QVERIFY(!answerTo(6, {}).isEmpty()); // its client no longer waits
    QTRY_VERIFY(!answerTo(10, {}).isEmpty() && replied.contains(10));
    QVERIFY(!replied.contains(6));
}

void RequestPortTest::messagesNameTheirSender()
{
    const auto port = makePort(1h);
    QVERIFY(port->serve());
    sendInTurn({4});
    const std::scoped_lock lock(mMutex);
    QCOMPARE(mSender, QDBusConnection::sessionBus().baseService());
}

QTEST_GUILESS_MAIN(RequestPortTest)
#include "requestporttest.moc"
