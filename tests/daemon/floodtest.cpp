// SPDX-License-Identifier: MIT
// A client that sends more than the daemon can handle at once, and the clients beside it. The daemon's main thread is
// blocked while the requests arrive, so all of them wait at the same time.
#include "base/qlcoreutility.h"
#include "base/status.h"
#include "daemon/requestqueue.h"
#include "platform/messageport.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/heldlog.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"

#include <QDBusMessage>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using DaemonProtocol::Command;

class FloodTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keyIsSentBetweenRequests();
    void anotherClientIsAnsweredBetweenRequests();
    void requestsBeyondTheLimitAreAnsweredAtOnce();
    void largestMessageIsAcceptedAndALargerOneRefused();
    void serviceContinuesAfterMuchTooLargeMessages();

private:
    static constexpr int floodCount = 60;   // within the limit, including the requests that the tests add
    static constexpr int sharingCount = 32; // the most changes that are carried out between two turns

    /// Blocks the main thread with a request that the daemon logs.
    void hold();
    void release() { mLog->release(); }
    /// Sends a change of the first profile's name.
    void sendChange(int number);
    /// Sends a request, waits until the daemon has received it and all earlier ones, and returns the daemon's answer.
    static QByteArray sendAndWait(Command command, const QVariantMap &request = {});
    [[nodiscard]] int replyCount(int status) const;

    std::unique_ptr<HeldLog> mLog;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void FloodTest::init()
{
    mLog = std::make_unique<HeldLog>();
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start([this] { mLog->becomeStandardError(); }));
    QVERIFY(mDaemon->request(Command::readSettings));
}

void FloodTest::cleanup()
{
    release();
    mDaemon.reset();
    mLog.reset();
}

void FloodTest::hold()
{
    mLog->hold();
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    port->post(99, QlCoreUtility::convertDictionaryToData(QVariantMap()).value());
}

void FloodTest::sendChange(int number)
{
    const QVariantMap settings{{u"ProfileName"_s, QString::number(number)}};
    mDaemon->send(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, settings}});
}

QByteArray FloodTest::sendAndWait(Command command, const QVariantMap &request)
{
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    if (!port)
        qFatal("there is no daemon");
    const auto answer = port->sendRequest(static_cast<qint32>(command),
                                          QlCoreUtility::convertDictionaryToData(request).value(), 20s, 20s);
    if (!answer)
        qFatal("the daemon does not take a request");
    return *answer;
}

int FloodTest::replyCount(int status) const
{
    return static_cast<int>(std::ranges::count_if(mDaemon->replies(), [status](const auto &reply) {
        return reply.values.value(u"ReturnStatus"_s).toInt() == status;
    }));
}

void FloodTest::keyIsSentBetweenRequests()
{
    SentRecorder recorder;
    hold();
    for (int number = 0; number < floodCount; ++number)
        sendChange(number);
    QDBusMessage press = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                        DaemonProtocol::virtualKeyboardPath,
                                                        DaemonProtocol::virtualKeyboardInterface, u"Press"_s);
    press << 7U << 4U;
    QDBusConnection::sessionBus().send(press);
    sendAndWait(Command::queryFirmwareVersion);
    mDaemon->replies().clear();
    // The daemon sends keys and replies over one connection, so they arrive in the order of sending.
    qsizetype repliesBefore = -1;
    connect(&recorder.keyboard(), &KeyboardProxy::Sent, this, [&] { repliesBefore = mDaemon->replies().size(); });
    release();
    QTRY_COMPARE(mDaemon->replies().size(), floodCount);
    QCOMPARE(recorder.sent(), QStringList{u"+7:4"_s});
    QVERIFY2(repliesBefore <= sharingCount, qPrintable(QString::number(repliesBefore)));
}

void FloodTest::anotherClientIsAnsweredBetweenRequests()
{
    hold();
    for (int number = 0; number < floodCount; ++number)
        sendChange(number);
    // Another sender with the same reply port, so the replies arrive in the order of sending.
    const QString name = u"another client"_s;
    {
        QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        QDBusMessage read =
            QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), u"/MessagePort"_s,
                                           u"org.quillkestra.MessagePort"_s, u"SendRequest"_s);
        const QVariantMap request{{u"ResponseMsgPortName"_s, DaemonProcessFixture::portName()}};
        read << static_cast<int>(Command::readSettings) << QlCoreUtility::convertDictionaryToData(request).value();
        QCOMPARE(other.call(read).type(), QDBusMessage::ReplyMessage);
    }
    release();
    QTRY_COMPARE(mDaemon->replies().size(), floodCount + 1);
    QDBusConnection::disconnectFromBus(name);
    const auto position = std::ranges::find(mDaemon->replies(), static_cast<qint32>(Command::readSettings),
                                            &DaemonProcessFixture::Reply::command)
                          - mDaemon->replies().begin();
    QVERIFY2(position <= sharingCount, qPrintable(QString::number(position)));
}

void FloodTest::requestsBeyondTheLimitAreAnsweredAtOnce()
{
    constexpr int over = 20;
    constexpr int sent = int(RequestQueue::maximumRequestsOfSender) + over;
    hold();
    for (int number = 0; number < sent; ++number)
        sendChange(number);
    const QByteArray answer = sendAndWait(Command::readSettings);
    QCOMPARE(QlCoreUtility::convertDataToDictionary(answer),
             std::optional(QVariantMap{{u"ReturnStatus"_s, static_cast<int>(Status::busy)}}));
    QTRY_VERIFY(mDaemon->replies().size() >= over); // the main thread is still blocked
    QCOMPARE(replyCount(static_cast<int>(Status::busy)), mDaemon->replies().size());
    release();
    QTRY_COMPARE(mDaemon->replies().size(), sent);
    int last = -1;
    for (const DaemonProcessFixture::Reply &reply : std::as_const(mDaemon->replies())) {
        const QVariantList profiles = reply.values.value(u"ReturnDictionary"_s).toMap().value(u"Profiles"_s).toList();
        if (reply.values.value(u"ReturnStatus"_s).toInt() == static_cast<int>(Status::busy))
            continue;
        QCOMPARE(profiles.first().toMap().value(u"ProfileName"_s), QVariant(QString::number(++last)));
    }
    QCOMPARE(last + 1 + replyCount(static_cast<int>(Status::busy)), sent);
}

void FloodTest::largestMessageIsAcceptedAndALargerOneRefused()
{
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    QByteArray data(RequestQueue::maximumMessageBytes, 'x');
    const auto acceptance = port->sendRequest(4, data, 20s, 20s);
    QVERIFY(acceptance);
    QCOMPARE(*acceptance, QByteArray());
    data += 'x';
    const auto refusal = port->sendRequest(4, data, 20s, 20s);
    QVERIFY(refusal);
    QCOMPARE(QlCoreUtility::convertDataToDictionary(*refusal),
             std::optional(QVariantMap{{u"ReturnStatus"_s, static_cast<int>(Status::limitReached)}}));
}

void FloodTest::serviceContinuesAfterMuchTooLargeMessages()
{
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    const QByteArray large(64 * 1024 * 1024, 'x'); // the limit of the bus
    for (int count = 0; count < 3; ++count)
        QVERIFY(port->sendRequest(static_cast<qint32>(Command::readSettings), large, 20s, 20s));
    const auto reply = mDaemon->request(Command::readSettings);
    QVERIFY(reply);
    QCOMPARE(reply->values.value(u"ReturnStatus"_s).toInt(), 0);
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7U, 4U}), QString());
    QCOMPARE(mDaemon->terminate(), 0);
}

QTEST_GUILESS_MAIN(FloodTest)
#include "floodtest.moc"
