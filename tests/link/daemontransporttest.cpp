// SPDX-License-Identifier: MIT
// Requests to a daemon, and the wait for its replies, over a real bus. The daemon answers by a script.
#include "daemonlink/daemontransport.h"
#include "base/qlcoreutility.h"
#include "daemonlink/latestreplyslot.h"
#include "daemonlink/replyport.h"
#include "tests/support/scripteddaemon.h"
#include "tests/support/testmain.h"
#include "tests/support/threadedport.h"

#include <QPoint>
#include <QtTest>

#include <semaphore>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Command = DaemonProtocol::Command;

namespace {

const QString replyPortName = DaemonProtocol::configuratorReplyPortName;

QVariantMap request()
{
    return {{DaemonProtocol::productIdKey, 271}, {DaemonProtocol::responsePortName, replyPortName}};
}

QVariantMap numbered(int number)
{
    return {{u"number"_s, number}};
}

std::optional<QVariantMap> reply()
{
    return LatestReplySlot::shared().read();
}

} // namespace

class DaemonTransportTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    // Sending
    void statusIsAlwaysMinus50_data();
    void statusIsAlwaysMinus50();
    void sendsTheCommandAndTheEncodedRequest();
    void sendsRequestsInOrder();
    void requestWithoutPropertyListFormIsSentWithoutData_data();
    void requestWithoutPropertyListFormIsSentWithoutData();
    void eachRequestSearchesForTheDaemon();
    void answerToTheSendIsIgnored();
    void givesUpASlowSendAfterTwoSeconds();
    void threadsMaySendAtOnce();

    // Waiting
    void withoutDaemonTheWaitEndsAfterItsPolls();
    void waitTakes601Polls();
    void waitEndsWhenTheReplyArrives();
    void waitNeverEmptiesTheSlot();
    void waitRunsNoEventLoop();
    void functionIsCalledUntilTheReplyArrives();

    // Kinds of answers of the daemon
    void replyIsDecoded();
    void replyOfAWholeDocumentArrives();
    void onlyTheSecondOfTwoRepliesIsSeen();
    void replyWithoutDataLeavesTheSlotUnchanged_data();
    void replyWithoutDataLeavesTheSlotUnchanged();
    void undecodableReplyIsAnEmptyDictionary_data();
    void undecodableReplyIsAnEmptyDictionary();
    void answersTheSenderWithItsOwnData();
    void identifierOfAReplyIsIgnored();
    void lateReplyGoesToTheNextWaiter();
    void untakenReplyGoesToTheNextWaiter();

private:
    std::unique_ptr<ReplyPort> mReplyPort;
};

void DaemonTransportTest::initTestCase()
{
    mReplyPort = std::make_unique<ReplyPort>(replyPortName);
    mReplyPort->start();
    QVERIFY(mReplyPort->waitUntilServing(10'000));
}

void DaemonTransportTest::init()
{
    LatestReplySlot::shared().clear();
}

void DaemonTransportTest::cleanup()
{
    setReplyPollInterval(replyPollInterval);
}

void DaemonTransportTest::cleanupTestCase()
{
    mReplyPort.reset();
}

void DaemonTransportTest::statusIsAlwaysMinus50_data()
{
    QTest::addColumn<bool>("isDaemonThere");
    QTest::addColumn<bool>("isRequestThere");
    QTest::newRow("daemon") << true << true;
    QTest::newRow("no daemon") << false << true;
    QTest::newRow("no request") << true << false;
    QTest::newRow("neither") << false << false;
}

void DaemonTransportTest::statusIsAlwaysMinus50()
{
    QFETCH(bool, isDaemonThere);
    QFETCH(bool, isRequestThere);
    ScriptedDaemon daemon;
    if (!isDaemonThere)
        daemon.disappear();
    const int status = sendDaemonRequest(isRequestThere ? std::optional(request()) : std::nullopt, 4);
    QCOMPARE(status, -50);
    QCOMPARE(daemon.requests().size(), size_t(isDaemonThere ? 1 : 0));
}

void DaemonTransportTest::sendsTheCommandAndTheEncodedRequest()
{
    ScriptedDaemon daemon;
    const QVariantMap sent{{DaemonProtocol::productIdKey, 271},
                           {DaemonProtocol::hasNoDelay, true},
                           {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{u"Keys"_s, QVariantMap()}}}};
    sendDaemonRequest(sent, 34);
    QCOMPARE(daemon.requests().size(), size_t(1));
    const ScriptedDaemon::Request received = daemon.requests().front();
    QCOMPARE(received.command, 34);
    QCOMPARE(received.data, QlCoreUtility::convertDictionaryToData(sent).value());
    QVERIFY(received.data.startsWith("bplist00"));
    QCOMPARE(received.dictionary, sent);
    QCOMPARE(received.dictionary.value(DaemonProtocol::hasNoDelay).typeId(), int(QMetaType::Bool));
}

void DaemonTransportTest::sendsRequestsInOrder()
{
    ScriptedDaemon daemon;
    const std::vector<int> commands{0, 4, 5, 6, 7, 9, 10, 14, 18, 38};
    for (const int command : commands)
        sendDaemonRequest(request(), command);
    QCOMPARE(daemon.commands(), commands);
}

void DaemonTransportTest::requestWithoutPropertyListFormIsSentWithoutData_data()
{
    QTest::addColumn<bool>("isAbsent");
    QTest::newRow("absent") << true;
    QTest::newRow("with a point in it") << false;
}

void DaemonTransportTest::requestWithoutPropertyListFormIsSentWithoutData()
{
    QFETCH(bool, isAbsent);
    ScriptedDaemon daemon;
    std::optional<QVariantMap> sent;
    if (!isAbsent)
        sent = QVariantMap{{u"point"_s, QPoint(1, 2)}};
    QCOMPARE(sendDaemonRequest(sent, 25), -50);
    QCOMPARE(daemon.commands(), std::vector<int>{25});
    QCOMPARE(daemon.requests().front().data, QByteArray());
}

void DaemonTransportTest::eachRequestSearchesForTheDaemon()
{
    ScriptedDaemon daemon;
    // A reply that is not taken would remain for the next test.
    daemon.setSilent(Command::readSettings);
    daemon.setSilent(Command::updateProfile);
    sendDaemonRequest(request(), 4);
    daemon.disappear();
    sendDaemonRequest(request(), 5);
    daemon.appear();
    sendDaemonRequest(request(), 6);
    QCOMPARE(daemon.commands(), (std::vector<int>{4, 6}));
}

void DaemonTransportTest::answerToTheSendIsIgnored()
{
    const ThreadedPort daemon(DaemonProtocol::requestPortName, [](qint32, const std::optional<QByteArray> &) {
        return QlCoreUtility::convertDictionaryToData(numbered(1));
    });
    QVERIFY(daemon.isServing());
    QCOMPARE(sendDaemonRequest(request(), 4), -50);
    QVERIFY(!reply());
}

void DaemonTransportTest::givesUpASlowSendAfterTwoSeconds()
{
    std::binary_semaphore mayAnswer(0);
    const ThreadedPort daemon(DaemonProtocol::requestPortName, [&](qint32, const std::optional<QByteArray> &data) {
        mayAnswer.acquire();
        return data;
    });
    QElapsedTimer timer;
    timer.start();
    const int status = sendDaemonRequest(request(), 4);
    const qint64 elapsedMs = timer.elapsed();
    mayAnswer.release();
    QCOMPARE(status, -50);
    // The bus library's timers are coarse; they may be off by a twentieth.
    QVERIFY2(elapsedMs >= 1900 && elapsedMs < 3900, qPrintable(QString::number(elapsedMs)));
}

void DaemonTransportTest::threadsMaySendAtOnce()
{
    ScriptedDaemon daemon;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([] {
                for (int i = 0; i < 20; ++i)
                    sendDaemonRequest(request(), 14);
            });
        }
    }
    QCOMPARE(daemon.count(Command::queryFirmwareVersion), 60);
}

void DaemonTransportTest::withoutDaemonTheWaitEndsAfterItsPolls()
{
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(sendDaemonRequest(request(), 4), -50);
    waitForReply();
    const qint64 elapsedMs = timer.elapsed();
    QVERIFY(!reply());
    QVERIFY2(elapsedMs >= 6010 && elapsedMs < 9000, qPrintable(QString::number(elapsedMs)));
}

void DaemonTransportTest::waitTakes601Polls()
{
    QCOMPARE(replyPollCount, 601);
    QCOMPARE(std::chrono::duration_cast<std::chrono::milliseconds>(replyPollInterval).count(), 10);
    setReplyPollInterval(1ms);
    QElapsedTimer timer;
    timer.start();
    waitForReply();
    const qint64 elapsedMs = timer.elapsed();
    QVERIFY2(elapsedMs >= 601 && elapsedMs < 5000, qPrintable(QString::number(elapsedMs)));
}

void DaemonTransportTest::waitEndsWhenTheReplyArrives()
{
    ScriptedDaemon daemon;
    daemon.setScript(Command::readSettings, [](const ScriptedDaemon::Request &) {
        return std::vector<ScriptedDaemon::Reply>{{.data = ScriptedDaemon::encoded(numbered(1)), .after = 50ms}};
    });
    setReplyPollInterval(30s); // a pause that is not cut short would be noticed
    QElapsedTimer timer;
    timer.start();
    sendDaemonRequest(request(), 4);
    waitForReply();
    QCOMPARE(reply(), numbered(1));
    QVERIFY(timer.elapsed() < 10'000);
}

void DaemonTransportTest::waitNeverEmptiesTheSlot()
{
    LatestReplySlot::shared().replace(numbered(1));
    waitForReply();
    waitForReply();
    QCOMPARE(reply(), numbered(1));
}

void DaemonTransportTest::functionIsCalledUntilTheReplyArrives()
{
    setReplyPollInterval(100us);
    int calls = 0;
    waitForReply([&calls] {
        if (++calls == 3)
            LatestReplySlot::shared().replace({{u"ReturnStatus"_s, 0}});
    });
    QCOMPARE(calls, 3);
    waitForReply([&calls] { ++calls; }); // a reply is there already
    QCOMPARE(calls, 3);
    LatestReplySlot::shared().clear();
    waitForReply([&calls] { ++calls; });
    QCOMPARE(calls, 3 + replyPollCount);
}

void DaemonTransportTest::waitRunsNoEventLoop()
{
    bool wasHandled = false;
    QMetaObject::invokeMethod(
        this, [&] { wasHandled = true; }, Qt::QueuedConnection);
    setReplyPollInterval(100us);
    sendDaemonRequest(request(), 4);
    waitForReply();
    QVERIFY(!wasHandled);
    QTRY_VERIFY(wasHandled);
}

void DaemonTransportTest::replyIsDecoded()
{
    ScriptedDaemon daemon;
    const QVariantMap expected{
        {DaemonProtocol::returnStatus, 0}, {u"on"_s, true}, {u"list"_s, QVariantList{1, u"a"_s}}};
    daemon.setReply(Command::deleteMacro, expected);
    sendDaemonRequest(request(), 22);
    waitForReply();
    QCOMPARE(reply(), expected);
    QCOMPARE(reply()->value(u"on"_s).typeId(), int(QMetaType::Bool));
}

void DaemonTransportTest::replyOfAWholeDocumentArrives()
{
    QVariantList profiles;
    for (int profile = 0; profile < 20; ++profile) {
        QVariantMap keys;
        for (int key = 4; key < 123; ++key)
            keys.insert(QString::number(key), QVariantMap{{u"command"_s, profile * 1000 + key}, {u"param1"_s, u"x"_s}});
        profiles.append(QVariantMap{{u"Keys"_s, keys}});
    }
    const QVariantMap document{{u"Profiles"_s, profiles}};
    ScriptedDaemon daemon(document);
    sendDaemonRequest(request(), 4);
    waitForReply();
    QVERIFY(reply());
    QCOMPARE(reply()->value(DaemonProtocol::allDevSettings).toMap(), document);
}

void DaemonTransportTest::onlyTheSecondOfTwoRepliesIsSeen()
{
    ScriptedDaemon daemon;
    daemon.sendToReplyPort(replyPortName, 4, ScriptedDaemon::encoded(numbered(1)));
    daemon.sendToReplyPort(replyPortName, 4, ScriptedDaemon::encoded(numbered(2)));
    waitForReply();
    QCOMPARE(LatestReplySlot::shared().take(), numbered(2));
    QVERIFY(!reply());
}

void DaemonTransportTest::replyWithoutDataLeavesTheSlotUnchanged_data()
{
    QTest::addColumn<bool>("isReplyThere");
    QTest::newRow("empty") << false;
    QTest::newRow("holding a reply") << true;
}

void DaemonTransportTest::replyWithoutDataLeavesTheSlotUnchanged()
{
    QFETCH(bool, isReplyThere);
    if (isReplyThere)
        LatestReplySlot::shared().replace(numbered(1));
    ScriptedDaemon daemon;
    QCOMPARE(daemon.sendToReplyPort(replyPortName, 4, QByteArray()), QByteArray());
    QCOMPARE(reply(), isReplyThere ? std::optional(numbered(1)) : std::nullopt);
    QVERIFY(!replyPortCallback(4, std::nullopt));
    QCOMPARE(reply(), isReplyThere ? std::optional(numbered(1)) : std::nullopt);
}

void DaemonTransportTest::undecodableReplyIsAnEmptyDictionary_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("no property list") << QByteArray("\x00\x01\x02", 3);
    QTest::newRow("cut short") << ScriptedDaemon::encoded(numbered(1)).chopped(4);
    QTest::newRow("array at the root") << QByteArray("<plist><array/></plist>");
}

void DaemonTransportTest::undecodableReplyIsAnEmptyDictionary()
{
    QFETCH(QByteArray, data);
    LatestReplySlot::shared().replace(numbered(1)); // and it replaces what was there
    ScriptedDaemon daemon;
    QCOMPARE(daemon.sendToReplyPort(replyPortName, 4, data), data);
    QCOMPARE(reply(), QVariantMap());
}

void DaemonTransportTest::answersTheSenderWithItsOwnData()
{
    ScriptedDaemon daemon;
    const QByteArray data = ScriptedDaemon::encoded(numbered(1));
    QCOMPARE(daemon.sendToReplyPort(replyPortName, 4, data), data);
    QCOMPARE(replyPortCallback(4, data), data);
}

void DaemonTransportTest::identifierOfAReplyIsIgnored()
{
    ScriptedDaemon daemon;
    daemon.setSilent(Command::readSettings);
    sendDaemonRequest(request(), 4);
    daemon.sendToReplyPort(replyPortName, -7, ScriptedDaemon::encoded(numbered(1)));
    waitForReply();
    QCOMPARE(reply(), numbered(1));
}

void DaemonTransportTest::lateReplyGoesToTheNextWaiter()
{
    ScriptedDaemon daemon;
    daemon.setSilent(Command::readSettings);
    daemon.setSilent(Command::deleteMacro);
    setReplyPollInterval(100us);
    sendDaemonRequest(request(), 4);
    waitForReply();
    QVERIFY(!LatestReplySlot::shared().take()); // was given up
    daemon.sendToReplyPort(replyPortName, 4, ScriptedDaemon::encoded(numbered(4)));
    sendDaemonRequest(request(), 22);
    waitForReply();
    QCOMPARE(LatestReplySlot::shared().take(), numbered(4));
}

void DaemonTransportTest::untakenReplyGoesToTheNextWaiter()
{
    ScriptedDaemon daemon;
    daemon.setReply(Command::queryFirmwareVersion, numbered(14));
    daemon.setSilent(Command::deleteMacro);
    sendDaemonRequest(request(), 14); // no caller waits for this one
    QTRY_VERIFY(reply());
    sendDaemonRequest(request(), 22);
    waitForReply();
    QCOMPARE(LatestReplySlot::shared().take(), numbered(14));
}

QTEST_GUILESS_MAIN(DaemonTransportTest)
#include "daemontransporttest.moc"
