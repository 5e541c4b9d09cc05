// SPDX-License-Identifier: MIT
#include "daemon/system/deadlinetimer.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

class DeadlineTimerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNeverEarly_data();
    void isNeverEarly();
    void reportsEachDeadlineOnce();
    void lastDeadlineApplies();
    void reportsNothingWithoutADeadline();
    void deadlineReplacedAtTheLastMomentIsNotReported();
};

void DeadlineTimerTest::isNeverEarly_data()
{
    QTest::addColumn<int>("microseconds");
    for (const int microseconds : {-1'000'000, 0, 1, 300, 999, 1000, 1500, 20'000})
        QTest::addRow("%d us from now", microseconds) << microseconds;
}

void DeadlineTimerTest::isNeverEarly()
{
    QFETCH(int, microseconds);
    DeadlineTimer timer;
    QVERIFY(timer.isUsable());
    const QSignalSpy reached(&timer, &DeadlineTimer::reached);
    const DeadlineTimer::Time deadline = DeadlineTimer::now() + std::chrono::microseconds(microseconds);
    timer.setDeadline(deadline);
    QTRY_COMPARE(reached.size(), 1);
    QVERIFY(DeadlineTimer::now() >= deadline);
}

void DeadlineTimerTest::reportsEachDeadlineOnce()
{
    DeadlineTimer timer;
    DeadlineTimer other;
    const QSignalSpy reached(&timer, &DeadlineTimer::reached);
    const QSignalSpy otherReached(&other, &DeadlineTimer::reached);
    for (int count = 1; count <= 3; ++count) {
        timer.setDeadline(DeadlineTimer::now() + 1ms);
        QTRY_COMPARE(reached.size(), count);
        other.setDeadline(DeadlineTimer::now() + 2ms);
        QTRY_COMPARE(otherReached.size(), count);
        QCOMPARE(reached.size(), count);
    }
}

void DeadlineTimerTest::lastDeadlineApplies()
{
    DeadlineTimer timer;
    const QSignalSpy reached(&timer, &DeadlineTimer::reached);
    timer.setDeadline(DeadlineTimer::now() + std::chrono::hours(1));
    timer.setDeadline(DeadlineTimer::now() + 1ms);
    QTRY_COMPARE(reached.size(), 1);
}

void DeadlineTimerTest::reportsNothingWithoutADeadline()
{
    DeadlineTimer timer;
    DeadlineTimer other;
    const QSignalSpy reached(&timer, &DeadlineTimer::reached);
    const QSignalSpy otherReached(&other, &DeadlineTimer::reached);
    timer.setDeadline(DeadlineTimer::now() + 1ms);
    timer.setDeadline({});
    other.setDeadline(DeadlineTimer::now() + 10ms);
    QTRY_COMPARE(otherReached.size(), 1);
    QCOMPARE(reached.size(), 0);
}

void DeadlineTimerTest::deadlineReplacedAtTheLastMomentIsNotReported()
{
    DeadlineTimer timer;
    DeadlineTimer other;
    const QSignalSpy reached(&timer, &DeadlineTimer::reached);
    const QSignalSpy otherReached(&other, &DeadlineTimer::reached);
    timer.setDeadline(DeadlineTimer::now()); // past before the event loop sees it
    timer.setDeadline(DeadlineTimer::now() + std::chrono::hours(1));
    other.setDeadline(DeadlineTimer::now() + 5ms);
    QTRY_COMPARE(otherReached.size(), 1);
    QCOMPARE(reached.size(), 0);
}

QTEST_GUILESS_MAIN(DeadlineTimerTest)
#include "deadlinetimertest.moc"
