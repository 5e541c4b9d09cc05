// SPDX-License-Identifier: MIT
#include "daemonlink/latestreplyslot.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QVariantMap numbered(int number)
{
    return {{u"number"_s, number}, {u"twin"_s, number}};
}

} // namespace

class LatestReplySlotTest : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyAtFirst();
    void readLeavesTheReply();
    void takeEmptiesTheSlot();
    void newerReplyReplacesOlderOne();
    void clearEmptiesTheSlot();
    void emptyDictionaryIsAReply();
    void waitEndsAtOnceWhenAReplyIsThere();
    void waitEndsEarlyWhenAReplyArrives();
    void waitEndsAfterItsLimit();
    void processHasOneSlot();
    void eachReplyIsTakenAtMostOnceAndComplete();
};

void LatestReplySlotTest::isEmptyAtFirst()
{
    LatestReplySlot slot;
    QVERIFY(!slot.holdsReply());
    QVERIFY(!slot.read());
    QVERIFY(!slot.take());
}

void LatestReplySlotTest::readLeavesTheReply()
{
    LatestReplySlot slot;
    slot.replace(numbered(1));
    QCOMPARE(slot.read(), numbered(1));
    QCOMPARE(slot.read(), numbered(1));
    QVERIFY(slot.holdsReply());
}

void LatestReplySlotTest::takeEmptiesTheSlot()
{
    LatestReplySlot slot;
    slot.replace(numbered(1));
    QCOMPARE(slot.take(), numbered(1));
    QVERIFY(!slot.holdsReply());
    QVERIFY(!slot.take());
}

void LatestReplySlotTest::newerReplyReplacesOlderOne()
{
    LatestReplySlot slot;
    slot.replace(numbered(1));
    slot.replace({{u"other"_s, 2}});
    QCOMPARE(slot.take(), (QVariantMap{{u"other"_s, 2}}));
    QVERIFY(!slot.holdsReply());
}

void LatestReplySlotTest::clearEmptiesTheSlot()
{
    LatestReplySlot slot;
    slot.clear();
    slot.replace(numbered(1));
    slot.clear();
    QVERIFY(!slot.holdsReply());
}

void LatestReplySlotTest::emptyDictionaryIsAReply()
{
    LatestReplySlot slot;
    slot.replace({});
    QVERIFY(slot.holdsReply());
    QCOMPARE(slot.take(), QVariantMap());
}

void LatestReplySlotTest::waitEndsAtOnceWhenAReplyIsThere()
{
    LatestReplySlot slot;
    slot.replace(numbered(1));
    QElapsedTimer timer;
    timer.start();
    slot.waitFor(20s);
    QVERIFY(timer.elapsed() < 10'000);
    QVERIFY(slot.holdsReply());
}

void LatestReplySlotTest::waitEndsEarlyWhenAReplyArrives()
{
    LatestReplySlot slot;
    std::atomic<bool> isWaiting = false;
    const std::jthread sender([&] {
        isWaiting.wait(false);
        slot.replace(numbered(1));
    });
    QElapsedTimer timer;
    timer.start();
    isWaiting = true;
    isWaiting.notify_one();
    slot.waitFor(20s);
    QVERIFY(timer.elapsed() < 10'000);
    QVERIFY(slot.holdsReply());
}

void LatestReplySlotTest::waitEndsAfterItsLimit()
{
    LatestReplySlot slot;
    QElapsedTimer timer;
    timer.start();
    slot.waitFor(30ms);
    QVERIFY(timer.elapsed() >= 30);
    QVERIFY(!slot.holdsReply());
}

void LatestReplySlotTest::processHasOneSlot()
{
    QCOMPARE(&LatestReplySlot::shared(), &LatestReplySlot::shared());
}

void LatestReplySlotTest::eachReplyIsTakenAtMostOnceAndComplete()
{
    constexpr int replies = 5000;
    LatestReplySlot slot;
    std::atomic<bool> isDone = false;
    std::vector<std::vector<int>> taken(3);
    std::atomic<int> torn = 0;
    {
        std::vector<std::jthread> takers;
        for (std::vector<int> &own : taken) {
            takers.emplace_back([&slot, &isDone, &torn, &own] {
                while (!isDone || slot.holdsReply()) {
                    slot.waitFor(1ms);
                    const std::optional<QVariantMap> peeked = slot.read();
                    if (peeked && peeked->value(u"number"_s) != peeked->value(u"twin"_s))
                        ++torn;
                    if (const std::optional<QVariantMap> reply = slot.take())
                        own.push_back(reply->value(u"number"_s).toInt());
                }
            });
        }
        for (int number = 0; number < replies; ++number)
            slot.replace(numbered(number));
        isDone = true;
    }
    QCOMPARE(torn.load(), 0);
    std::vector<int> all;
    for (const std::vector<int> &own : taken) {
        QVERIFY(std::ranges::is_sorted(own)); // never an older reply after a newer one
        all.insert(all.end(), own.begin(), own.end());
    }
    std::ranges::sort(all);
    QVERIFY(std::ranges::adjacent_find(all) == all.end());
    QCOMPARE(all.back(), replies - 1); // no older reply replaced the last one
}

QTEST_GUILESS_MAIN(LatestReplySlotTest)
#include "latestreplyslottest.moc"
