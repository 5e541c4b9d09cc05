// SPDX-License-Identifier: MIT
// Message ports over a real bus: the port under test has its own connection, as in another process.
#include "platform/messageport.h"
#include "tests/support/testmain.h"
#include "tests/support/threadedport.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QXmlStreamReader>
#include <QtTest>

#include <atomic>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SendError = RemoteMessagePort::SendError;

namespace {

const QString portName = u"TestPort"_s;
const QString interfaceName = u"org.quillkestra.MessagePort"_s;

struct Message
{
    int identifier = -1;
    std::optional<QByteArray> data;
};

/// Passes the messages that the port's thread receives to the thread of the test.
class Inbox
{
public:
    void put(int identifier, const std::optional<QByteArray> &data)
    {
        const std::scoped_lock lock(mMutex);
        mMessages.push_back({identifier, data});
    }

    [[nodiscard]] std::vector<Message> messages() const
    {
        const std::scoped_lock lock(mMutex);
        return mMessages;
    }

private:
    mutable std::mutex mMutex;
    std::vector<Message> mMessages;
};

QDBusMessage portCall(const QString &interface, const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(messagePortBusName(portName), u"/MessagePort"_s, interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

bool hasOwner(const QString &busName)
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(busName);
}

std::optional<QByteArray> answerNothing(qint32, const std::optional<QByteArray> &)
{
    return {};
}

} // namespace

class MessagePortTest : public QObject
{
    Q_OBJECT

private slots:
    void opensOnlyPortsThatExist();
    void recognisesValidPortNames_data();
    void recognisesValidPortNames();
    void callsTheFunctionBetweenSendingAndTheAnswer();
    void callsTheFunctionAgainAndAgainWhileItWaits();
    void carriesIdentifierAndData_data();
    void carriesIdentifierAndData();
    void emptyMessageCarriesNoData();
    void absentAnswerIsEmptyArray();
    void postDoesNotWaitForTheAnswer();
    void postsArriveInOrder();
    void refusesNameThatIsTaken();
    void refusedPortLeavesOtherPortOfTheConnectionAlone_data();
    void refusedPortLeavesOtherPortOfTheConnectionAlone();
    void withoutBusThereIsNoPort();
    void endOfPortFreesItsName();
    void sendToAMissingPortIsInvalid();
    void sendGivesUpAfterReceiveTimeout();
    void sendRunsNoEventLoop();
    void threadsSendAtOnce();
    void exportsOnlySendRequest();
    void callsNothingElse_data();
    void callsNothingElse();
};

void MessagePortTest::opensOnlyPortsThatExist()
{
    QVERIFY(!RemoteMessagePort::open(portName));
    const ThreadedPort port(portName, answerNothing);
    QVERIFY(port.isServing());
    QVERIFY(RemoteMessagePort::open(portName));
    QVERIFY(!RemoteMessagePort::open(u"TestPor"_s));
}

void MessagePortTest::recognisesValidPortNames_data()
{
    constexpr int room = 255 - 16; // of a bus name, after "org.quillkestra."
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isPossible");
    QTest::newRow("a word") << u"TestPort"_s << true;
    QTest::newRow("every kind") << u"Test-Port_1.a9._-"_s << true;
    QTest::newRow("as long as can be") << QString(room, u'a') << true;
    QTest::newRow("too long") << QString(room + 1, u'a') << false;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("a digit first") << u"1Port"_s << false;
    QTest::newRow("a digit after a dot") << u"Test.1"_s << false;
    QTest::newRow("a dot first") << u".Port"_s << false;
    QTest::newRow("a dot last") << u"Port."_s << false;
    QTest::newRow("two dots") << u"Test..Port"_s << false;
    QTest::newRow("a space") << u"Test Port"_s << false;
    QTest::newRow("a pattern") << u"Test*"_s << false;
    QTest::newRow("a quote") << u"Test'"_s << false;
    QTest::newRow("a letter of Latin 1") << u"\u00e9"_s << false;
    QTest::newRow("a digit of another script") << u"Test\u0664"_s << false;
    QTest::newRow("half a character") << QString(QChar(0xD800)) << false;
    QTest::newRow("a zero") << QString(QChar(0)) << false;
}

// The bus gives the same answer for every name: the rule is its own.
void MessagePortTest::recognisesValidPortNames()
{
    QFETCH(QString, name);
    QFETCH(bool, isPossible);
    QCOMPARE(isMessagePortName(name), isPossible);
    QVERIFY(!RemoteMessagePort::open(name));
    const ThreadedPort port(name, answerNothing);
    QCOMPARE(port.isServing(), isPossible);
    QCOMPARE(RemoteMessagePort::open(name).has_value(), isPossible);
}

void MessagePortTest::callsTheFunctionBetweenSendingAndTheAnswer()
{
    std::binary_semaphore isReceived(0), isReleased(0);
    const ThreadedPort port(portName, [&](qint32, const std::optional<QByteArray> &data) {
        isReceived.release();
        isReleased.acquire();
        return data;
    });
    QVERIFY(port.isServing());
    const auto meanwhile = [&] {
        isReceived.acquire(); // the message was sent
        isReleased.release(); // the port answers after this
    };
    const auto answer = RemoteMessagePort::open(portName)->sendRequest(1, "echo", 20s, 20s, meanwhile);
    QVERIFY(answer);
    QCOMPARE(*answer, QByteArray("echo"));
}

void MessagePortTest::callsTheFunctionAgainAndAgainWhileItWaits()
{
    std::binary_semaphore isReleased(0);
    const ThreadedPort port(portName, [&](qint32, const std::optional<QByteArray> &data) {
        isReleased.acquire();
        return data;
    });
    QVERIFY(port.isServing());
    const auto wasHandled = std::make_shared<bool>(false); // the call may come after the end of the test
    QMetaObject::invokeMethod(
        this, [wasHandled] { *wasHandled = true; }, Qt::QueuedConnection);
    int calls = 0;
    const auto whileWaiting = [&] {
        if (++calls == 3)
            isReleased.release();
    };
    const auto answer = RemoteMessagePort::open(portName)->sendRequest(1, "echo", 20s, 20s, {}, whileWaiting);
    QCOMPARE(answer.valueOr({}), QByteArray("echo"));
    QVERIFY(calls >= 3);
    QVERIFY(!*wasHandled); // no event loop ran
}

void MessagePortTest::carriesIdentifierAndData_data()
{
    QTest::addColumn<int>("identifier");
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("zero") << 0 << QByteArray("a");
    QTest::newRow("largest") << std::numeric_limits<qint32>::max() << QByteArray("bplist00");
    QTest::newRow("negative") << std::numeric_limits<qint32>::min() << QByteArray("b");
    QTest::newRow("every byte") << 38 << [] {
        QByteArray bytes;
        for (int byte = 0; byte < 256; ++byte)
            bytes.append(char(byte));
        return bytes;
    }();
    QTest::newRow("a megabyte") << 4 << QByteArray(1 << 20, '\xA5');
}

void MessagePortTest::carriesIdentifierAndData()
{
    QFETCH(int, identifier);
    QFETCH(QByteArray, data);
    Inbox inbox;
    const ThreadedPort port(portName, [&](qint32 id, const std::optional<QByteArray> &bytes) {
        inbox.put(id, bytes);
        return std::optional(QByteArray("answer to ") + QByteArray::number(id));
    });
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    const Result<QByteArray, SendError> answer = remote->sendRequest(identifier, data, 2s, 2s);
    QCOMPARE(inbox.messages().size(), size_t(1));
    QCOMPARE(inbox.messages().front().identifier, identifier);
    QCOMPARE(inbox.messages().front().data, data);
    QVERIFY(answer);
    QCOMPARE(*answer, QByteArray("answer to ") + QByteArray::number(identifier));
}

void MessagePortTest::emptyMessageCarriesNoData()
{
    Inbox inbox;
    const ThreadedPort port(portName, [&](qint32 id, const std::optional<QByteArray> &bytes) {
        inbox.put(id, bytes);
        return bytes;
    });
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    QVERIFY(remote->sendRequest(14, {}, 2s, 2s));
    QCOMPARE(inbox.messages().size(), size_t(1));
    QCOMPARE(inbox.messages().front().identifier, 14);
    QVERIFY(!inbox.messages().front().data);
}

void MessagePortTest::absentAnswerIsEmptyArray()
{
    const ThreadedPort port(portName, answerNothing);
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    const Result<QByteArray, SendError> answer = remote->sendRequest(1, "x", 2s, 2s);
    QVERIFY(answer && answer->isEmpty());
    const QDBusMessage reply = portCall(interfaceName, u"SendRequest"_s, {1, QByteArray("x")});
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.signature(), u"ay"_s);
}

void MessagePortTest::postDoesNotWaitForTheAnswer()
{
    std::binary_semaphore arrived(0);
    std::binary_semaphore mayAnswer(0);
    const ThreadedPort port(portName, [&](qint32, const std::optional<QByteArray> &bytes) {
        arrived.release();
        mayAnswer.acquire();
        return bytes;
    });
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    remote->post(1, "x"); // if it waited, it would hang here until the time limit of the bus
    QVERIFY(arrived.try_acquire_for(5s));
    mayAnswer.release();
}

void MessagePortTest::postsArriveInOrder()
{
    constexpr int count = 500;
    Inbox inbox;
    const ThreadedPort port(portName, [&](qint32 id, const std::optional<QByteArray> &) {
        inbox.put(id, {});
        return std::optional<QByteArray>();
    });
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    for (int id = 0; id < count; ++id)
        remote->post(id, "x");
    QTRY_COMPARE_WITH_TIMEOUT(inbox.messages().size(), size_t(count), 20'000);
    const std::vector<Message> messages = inbox.messages();
    for (int id = 0; id < count; ++id)
        QCOMPARE(messages[size_t(id)].identifier, id);
}

void MessagePortTest::refusesNameThatIsTaken()
{
    const ThreadedPort first(portName, [](qint32, const std::optional<QByteArray> &) { return QByteArray("first"); });
    {
        const ThreadedPort second(portName,
                                  [](qint32, const std::optional<QByteArray> &) { return QByteArray("second"); });
        QVERIFY(first.isServing());
        QVERIFY(!second.isServing());
    }
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote); // the refusal affected no other port
    QCOMPARE(remote->sendRequest(1, "x", 2s, 2s).valueOr({}), QByteArray("first"));
}

void MessagePortTest::refusedPortLeavesOtherPortOfTheConnectionAlone_data()
{
    QTest::addColumn<QString>("secondName");
    QTest::newRow("same name") << portName;
    QTest::newRow("other name") << u"OtherPort"_s;
}

void MessagePortTest::refusedPortLeavesOtherPortOfTheConnectionAlone()
{
    QFETCH(QString, secondName);
    const QDBusConnection connection = QDBusConnection::sessionBus();
    const auto first = LocalMessagePort::create(portName, answerNothing, connection);
    QVERIFY(first);
    // A connection can have only one /MessagePort.
    QVERIFY(!LocalMessagePort::create(secondName, answerNothing, connection));
    QVERIFY(hasOwner(messagePortBusName(portName)));
    QCOMPARE(connection.objectRegisteredAt(u"/MessagePort"_s), first.get());
}

void MessagePortTest::withoutBusThereIsNoPort()
{
    const QDBusConnection none(u"never connected"_s);
    QVERIFY(!none.isConnected());
    QVERIFY(!LocalMessagePort::create(portName, answerNothing, none));
}

void MessagePortTest::endOfPortFreesItsName()
{
    {
        const ThreadedPort port(portName, answerNothing);
        QVERIFY(hasOwner(messagePortBusName(portName)));
    }
    QVERIFY(!hasOwner(messagePortBusName(portName)));
    const ThreadedPort again(portName, answerNothing);
    QVERIFY(again.isServing());
}

void MessagePortTest::sendToAMissingPortIsInvalid()
{
    auto port = std::make_unique<ThreadedPort>(portName, answerNothing);
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    port.reset();
    const Result<QByteArray, SendError> answer = remote->sendRequest(1, "x", 2s, 2s);
    QVERIFY(!answer);
    QVERIFY(answer.error() == SendError::isInvalid);
}

void MessagePortTest::sendGivesUpAfterReceiveTimeout()
{
    std::binary_semaphore mayAnswer(0);
    const ThreadedPort port(portName, [&](qint32, const std::optional<QByteArray> &bytes) {
        mayAnswer.acquire();
        return bytes;
    });
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    QElapsedTimer timer;
    timer.start();
    const Result<QByteArray, SendError> answer = remote->sendRequest(1, "x", 2s, 150ms);
    const qint64 elapsedMs = timer.elapsed();
    mayAnswer.release();
    QVERIFY(!answer);
    QVERIFY(answer.error() == SendError::receiveTimeout);
    // The bus library's timers are coarse; they may be off by a twentieth.
    QVERIFY2(elapsedMs >= 142 && elapsedMs < 5000, qPrintable(QString::number(elapsedMs)));
}

void MessagePortTest::sendRunsNoEventLoop()
{
    std::binary_semaphore eventWasHandled(0);
    std::atomic<bool> wasHandledDuringSend = true;
    const ThreadedPort port(portName, [&](qint32, const std::optional<QByteArray> &bytes) {
        wasHandledDuringSend = eventWasHandled.try_acquire_for(200ms);
        return bytes;
    });
    const auto remote = RemoteMessagePort::open(portName);
    QVERIFY(remote);
    bool wasHandled = false;
    QMetaObject::invokeMethod(
        this,
        [&] {
            wasHandled = true;
            eventWasHandled.release();
        },
        Qt::QueuedConnection);
    QVERIFY(remote->sendRequest(1, "x", 2s, 2s));
    QVERIFY(!wasHandledDuringSend.load());
    QTRY_VERIFY(wasHandled);
}

void MessagePortTest::threadsSendAtOnce()
{
    const ThreadedPort port(portName, [](qint32 id, const std::optional<QByteArray> &bytes) {
        return bytes.value_or(QByteArray()) + QByteArray::number(id);
    });
    std::atomic<int> right = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([thread, &right] {
                for (int i = 0; i < 50; ++i) {
                    const int id = thread * 1000 + i;
                    const auto remote = RemoteMessagePort::open(portName);
                    if (remote && remote->sendRequest(id, "id ", 5s, 5s).valueOr({}) == "id " + QByteArray::number(id))
                        ++right;
                }
            });
        }
    }
    QCOMPARE(right.load(), 200);
}

void MessagePortTest::exportsOnlySendRequest()
{
    const ThreadedPort port(portName, answerNothing);
    const QDBusMessage reply = portCall(u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QXmlStreamReader xml(reply.arguments().at(0).toString());
    QString interface;
    QStringList own;
    QStringList otherInterfaces;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attribute = [&](QLatin1StringView name) { return xml.attributes().value(name).toString(); };
        if (xml.name() == "interface"_L1) {
            interface = attribute("name"_L1);
            if (interface != interfaceName)
                otherInterfaces.append(interface);
        } else if (interface == interfaceName) {
            own.append(u"%1 %2 %3 %4"_s.arg(xml.name(), attribute("name"_L1), attribute("type"_L1),
                                            attribute("direction"_L1)));
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(own, QStringList({u"method SendRequest  "_s, u"arg messageIdentifier i in"_s, u"arg data ay in"_s,
                               u"arg answer ay out"_s}));
    for (const QString &other : std::as_const(otherInterfaces)) // those that every object on the bus has
        QVERIFY2(other.startsWith("org.freedesktop.DBus."_L1), qPrintable(other));
}

void MessagePortTest::callsNothingElse_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("a slot of every object") << u"deleteLater"_s << QVariantList();
    QTest::newRow("unknown") << u"Nothing"_s << QVariantList();
    QTest::newRow("no arguments") << u"SendRequest"_s << QVariantList();
    QTest::newRow("text for bytes") << u"SendRequest"_s << QVariantList{1, u"text"_s};
    QTest::newRow("64-bit identifier") << u"SendRequest"_s << QVariantList{qlonglong(1), QByteArray("x")};
    QTest::newRow("unsigned identifier") << u"SendRequest"_s << QVariantList{1u, QByteArray("x")};
}

void MessagePortTest::callsNothingElse()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    std::atomic<int> calls = 0;
    const ThreadedPort port(portName, [&](qint32, const std::optional<QByteArray> &bytes) {
        ++calls;
        return bytes;
    });
    const QDBusMessage reply = portCall(interfaceName, method, arguments);
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(reply.errorName(), u"org.freedesktop.DBus.Error.UnknownMethod"_s);
    QCOMPARE(calls.load(), 0);
}

QTEST_GUILESS_MAIN(MessagePortTest)
#include "messageporttest.moc"
