// SPDX-License-Identifier: MIT
#include "daemon/requestturns.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "tests/support/testmain.h"

#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RequestTurnsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { QDBusConnection::disconnectFromBus(connectionName); }
    void init();
    void requestsWaitForTheEventLoop();
    void otherWorkHasItsTurnBetweenTwoRequests();
    void laterRequestsHaveTurnsAgain();
    void workThatIsLeftHasATurnWithAnEmptyQueue();
    void endsWhileRequestsWait();

private:
    static inline const QString connectionName = u"the daemon's"_s;

    [[nodiscard]] std::unique_ptr<RequestTurns> makeTurns();
    /// Returns when the port has accepted all of them.
    static void send(const std::vector<qint32> &numbers);

    std::vector<qint32> mHandled;
    int mCallsLeft = 0; // for work that does not come from the queue
    bool mIsOnMainThread = true;
};

void RequestTurnsTest::initTestCase()
{
    // A separate connection, because QtDBus takes a short cut from a connection to itself.
    QVERIFY(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName).isConnected());
}

void RequestTurnsTest::init()
{
    mHandled.clear();
    mCallsLeft = 0;
}

std::unique_ptr<RequestTurns> RequestTurnsTest::makeTurns()
{
    return std::make_unique<RequestTurns>(QDBusConnection(connectionName), [this](RequestQueue &queue) {
        mIsOnMainThread = mIsOnMainThread && QThread::currentThread() == thread();
        const std::optional<RequestMessage> message = queue.take();
        mHandled.push_back(message ? message->number : -1);
        return !queue.isEmpty() || mCallsLeft-- > 0;
    });
}

void RequestTurnsTest::send(const std::vector<qint32> &numbers)
{
    const auto remote = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(remote);
    for (const qint32 number : numbers)
        QVERIFY(remote->sendRequest(number, "x", 20s, 20s));
}

void RequestTurnsTest::requestsWaitForTheEventLoop()
{
    const auto turns = makeTurns();
    QVERIFY(turns->serve());
    send({1, 2, 3}); // the port accepts them while this thread handles no event
    QVERIFY(mHandled.empty());
    QTRY_COMPARE(mHandled, (std::vector<qint32>{1, 2, 3}));
    QVERIFY(mIsOnMainThread);
}

void RequestTurnsTest::otherWorkHasItsTurnBetweenTwoRequests()
{
    const auto turns = makeTurns();
    QVERIFY(turns->serve());
    std::vector<std::size_t> handledBefore; // each round of the event loop
    QTimer otherWork;
    otherWork.callOnTimeout([&] { handledBefore.push_back(mHandled.size()); });
    otherWork.start(0ms);
    send({1, 2, 3, 4});
    QTRY_COMPARE(mHandled.size(), std::size_t(4));
    for (const std::size_t count : {1, 2, 3})
        QVERIFY(std::ranges::find(handledBefore, count) != handledBefore.end());
}

void RequestTurnsTest::laterRequestsHaveTurnsAgain()
{
    const auto turns = makeTurns();
    QVERIFY(turns->serve());
    send({1});
    QTRY_COMPARE(mHandled, std::vector<qint32>{1});
    send({2});
    QTRY_COMPARE(mHandled, (std::vector<qint32>{1, 2}));
}

void RequestTurnsTest::workThatIsLeftHasATurnWithAnEmptyQueue()
{
    mCallsLeft = 2;
    const auto turns = makeTurns();
    QVERIFY(turns->serve());
    send({1});
    QTRY_COMPARE(mHandled, (std::vector<qint32>{1, -1, -1}));
    // The turns have ended: the next one belongs to the next request.
    send({2});
    QTRY_COMPARE(mHandled, (std::vector<qint32>{1, -1, -1, 2}));
}

void RequestTurnsTest::endsWhileRequestsWait()
{
    auto turns = makeTurns();
    QVERIFY(turns->serve());
    send({1});
    turns.reset();
    QVERIFY(!RemoteMessagePort::open(DaemonProtocol::requestPortName));
    QCoreApplication::processEvents();
    QVERIFY(mHandled.empty());
}

QTEST_GUILESS_MAIN(RequestTurnsTest)
#include "requestturnstest.moc"
