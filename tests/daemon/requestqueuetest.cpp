// SPDX-License-Identifier: MIT
#include "daemon/requestqueue.h"

#include "base/propertylist.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <algorithm>
#include <limits>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

const QString a = u":1.1"_s;
const QString b = u":1.2"_s;
const QString c = u":1.3"_s;

RequestMessage message(qint32 number, qsizetype bytes = 1)
{
    return {.number = number, .data = QByteArray(bytes, 'x'), .readAt = {}};
}

/// The numbers of all requests, in the order in which they are taken.
QList<qint32> takeAll(RequestQueue &queue)
{
    QList<qint32> numbers;
    while (const auto next = queue.take())
        numbers += next->number;
    return numbers;
}

/// The statuses of adding `count` requests of `bytes` each.
QList<Status> addMany(RequestQueue &queue, const QString &sender, qsizetype count, qsizetype bytes = 1)
{
    QList<Status> statuses;
    for (qsizetype number = 0; number < count; ++number)
        statuses += queue.add(sender, message(static_cast<qint32>(number), bytes));
    return statuses;
}

} // namespace

class RequestQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheOrderOfASender();
    void alternatesBetweenSenders();
    void takesTheFirstMatchingRequest();
    void overtakesNoRequestOfTheSameSender();
    void limitsTheRequestsOfASender();
    void limitsTheBytesOfASender();
    void limitsTheRequestsOfAll();
    void limitsTheBytesOfAll();
    void refusesAMessageThatIsTooLarge();
    void hasRoomAgainWhenRequestsWereTaken();
    void countsRefusals();
    void passesEachRequestFromOneThreadToAnother();
    void largestDocumentFits();
};

void RequestQueueTest::keepsTheOrderOfASender()
{
    RequestQueue queue;
    QVERIFY(queue.isEmpty());
    for (const qint32 number : {3, 1, 2})
        QCOMPARE(queue.add(a, message(number)), Status::ok);
    QVERIFY(!queue.isEmpty());
    QCOMPARE(takeAll(queue), QList<qint32>({3, 1, 2}));
    QVERIFY(queue.isEmpty());
}

void RequestQueueTest::alternatesBetweenSenders()
{
    RequestQueue queue;
    for (const qint32 number : {10, 11, 12, 13})
        QCOMPARE(queue.add(a, message(number)), Status::ok);
    for (const qint32 number : {20, 21})
        QCOMPARE(queue.add(b, message(number)), Status::ok);
    QCOMPARE(queue.take()->number, 10);
    QCOMPARE(queue.add(c, message(30)), Status::ok);
    QCOMPARE(takeAll(queue), QList<qint32>({20, 11, 30, 21, 12, 13}));
}

void RequestQueueTest::takesTheFirstMatchingRequest()
{
    RequestQueue queue;
    for (const auto &[sender, number] : {std::pair(a, 1), {b, 20}, {c, 30}, {c, 31}})
        QCOMPARE(queue.add(sender, message(number)), Status::ok);
    const auto isTwoDigits = [](const RequestMessage &request) { return request.number > 9; };
    QCOMPARE(queue.takeIf(isTwoDigits)->number, 20);
    QCOMPARE(queue.takeIf(isTwoDigits)->number, 30);
    QCOMPARE(queue.takeIf(isTwoDigits)->number, 31);
    QVERIFY(!queue.takeIf(isTwoDigits));
    QCOMPARE(takeAll(queue), QList<qint32>({1})); // the caller did not want it, and it keeps its turn
}

void RequestQueueTest::overtakesNoRequestOfTheSameSender()
{
    RequestQueue queue;
    for (const qint32 number : {1, 2})
        QCOMPARE(queue.add(a, message(number)), Status::ok);
    QVERIFY(!queue.takeIf([](const RequestMessage &request) { return request.number == 2; }));
}

void RequestQueueTest::limitsTheRequestsOfASender()
{
    RequestQueue queue;
    QList<Status> expected(RequestQueue::maximumRequestsOfSender, Status::ok);
    expected += {Status::busy, Status::busy};
    QCOMPARE(addMany(queue, a, expected.size()), expected);
    QCOMPARE(queue.add(b, message(1)), Status::ok); // another sender has a separate limit
    QCOMPARE(takeAll(queue).size(), RequestQueue::maximumRequestsOfSender + 1);
}

void RequestQueueTest::limitsTheBytesOfASender()
{
    RequestQueue queue;
    QCOMPARE(addMany(queue, a, 3, RequestQueue::maximumBytesOfSender / 2),
             QList<Status>({Status::ok, Status::ok, Status::busy}));
    QCOMPARE(queue.add(b, message(1, 1000)), Status::ok);
}

void RequestQueueTest::limitsTheRequestsOfAll()
{
    RequestQueue queue;
    const qsizetype senders = RequestQueue::maximumRequests / RequestQueue::maximumRequestsOfSender;
    for (qsizetype sender = 0; sender < senders; ++sender)
        QVERIFY(!addMany(queue, QString::number(sender), RequestQueue::maximumRequestsOfSender).contains(Status::busy));
    QCOMPARE(queue.add(a, message(1)), Status::busy);
    QVERIFY(queue.take());
    QCOMPARE(queue.add(a, message(1)), Status::ok);
}

void RequestQueueTest::limitsTheBytesOfAll()
{
    RequestQueue queue;
    for (const QString &sender : {a, b})
        QCOMPARE(queue.add(sender, message(1, RequestQueue::maximumBytes / 2)), Status::ok);
    QCOMPARE(queue.add(c, message(1)), Status::busy);
}

void RequestQueueTest::refusesAMessageThatIsTooLarge()
{
    RequestQueue queue;
    QCOMPARE(queue.add(a, message(1, RequestQueue::maximumMessageBytes + 1)), Status::limitReached);
    QVERIFY(queue.isEmpty());
    QCOMPARE(queue.add(a, message(1, RequestQueue::maximumMessageBytes)), Status::ok);
}

void RequestQueueTest::hasRoomAgainWhenRequestsWereTaken()
{
    RequestQueue queue;
    for (int round = 0; round < 3; ++round) {
        QCOMPARE(queue.add(a, message(1, RequestQueue::maximumBytesOfSender)), Status::ok);
        QCOMPARE(queue.add(a, message(2)), Status::busy);
        QVERIFY(queue.take());
    }
}

void RequestQueueTest::countsRefusals()
{
    RequestQueue queue;
    QCOMPARE(queue.takeRefusedCount(), 0);
    addMany(queue, a, RequestQueue::maximumRequestsOfSender + 3);
    QCOMPARE(queue.takeRefusedCount(), 3);
    QCOMPARE(queue.takeRefusedCount(), 0);
}

void RequestQueueTest::passesEachRequestFromOneThreadToAnother()
{
    constexpr int count = 2000; // many times the limit of a sender
    RequestQueue queue;
    int refused = 0;
    std::jthread port([&queue, &refused] {
        for (int number = 0; number < count; ++number) {
            while (queue.add(number % 2 == 0 ? a : b, message(number)) != Status::ok) {
                ++refused;
                std::this_thread::yield();
            }
        }
    });
    QList<qint32> even;
    QList<qint32> odd;
    int seenRefused = 0;
    while (even.size() + odd.size() < count) {
        if (const auto next = queue.take())
            (next->number % 2 == 0 ? even : odd) += next->number;
        seenRefused += queue.takeRefusedCount();
    }
    port.join();
    QVERIFY(queue.isEmpty());
    QVERIFY(std::ranges::is_sorted(even) && std::ranges::is_sorted(odd));
    QCOMPARE(even.size(), count / 2);
    QCOMPARE(seenRefused + queue.takeRefusedCount(), refused);
}

// The document with the most bytes: as many values as are allowed, all of the greatest length and different, and as
// much data as is allowed.
void RequestQueueTest::largestDocumentFits()
{
    QVariantList numbers;
    constexpr int others = 60; // the rest of the document
    for (int count = 0; count < SettingsDocument::maximumNodes - others; ++count)
        numbers += std::numeric_limits<qulonglong>::max() - static_cast<qulonglong>(count);
    const QByteArray data(SettingsDocument::maximumContentBytes - 1000, 'x');
    QVariantMap document = SettingsDocument::minimal();
    document.insert(u"Data"_s, data);
    document.insert(u"Numbers"_s, numbers);
    document = SettingsDocument::completed(document);
    QCOMPARE(reasonOf(SettingsDocument::validate(document)), QString());
    const std::optional<QByteArray> bytes = PropertyList::writeBinary(document);
    QVERIFY(bytes);
    QVERIFY2(bytes->size() <= SettingsDocument::maximumBinaryBytes, qPrintable(QString::number(bytes->size())));
    QVERIFY(bytes->size() > SettingsDocument::maximumBinaryBytes - 10'000); // the limit is not unnecessarily large
    numbers += QVariantList(others, 1);
    document.insert(u"Numbers"_s, numbers);
    QVERIFY(!SettingsDocument::validate(document));
}

QTEST_GUILESS_MAIN(RequestQueueTest)
#include "requestqueuetest.moc"
