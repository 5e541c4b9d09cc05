// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/latencyhistogram.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace std::chrono_literals;

class LatencyHistogramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void bucketsFollowEachOtherWithoutGaps();
    void percentilesAreAtMostAnEighthTooHigh();
    void extremesAreCounted();
    void timeOfASuspendedProcessIsNotCounted();
    void canBeCleared();
};

void LatencyHistogramTest::isEmptyAtFirst()
{
    QCOMPARE(LatencyHistogram().latency(), KeyLatency());
}

void LatencyHistogramTest::bucketsFollowEachOtherWithoutGaps()
{
    quint32 first = 0;
    for (std::size_t bucket = 0; first < 1'000'000'000; ++bucket) {
        const quint32 last = LatencyHistogram::upperBound(bucket);
        QVERIFY(last >= first);
        QCOMPARE(LatencyHistogram::bucketOf(first), bucket);
        QCOMPARE(LatencyHistogram::bucketOf(last), bucket);
        QVERIFY(last - first <= first / 8);
        first = last + 1;
    }
}

void LatencyHistogramTest::percentilesAreAtMostAnEighthTooHigh()
{
    LatencyHistogram histogram;
    for (int us = 1; us <= 1000; ++us)
        histogram.add(std::chrono::microseconds(us));
    const KeyLatency latency = histogram.latency();
    QCOMPARE(latency.count, quint64(1000));
    QVERIFY2(latency.p50Us >= 500 && latency.p50Us <= 563, qPrintable(QString::number(latency.p50Us)));
    QVERIFY2(latency.p99Us >= 990 && latency.p99Us <= 1000, qPrintable(QString::number(latency.p99Us)));
    QCOMPARE(latency.maximumUs, 1000u);
}

void LatencyHistogramTest::extremesAreCounted()
{
    LatencyHistogram histogram;
    histogram.add(-5us);
    histogram.add(0us);
    QCOMPARE(histogram.latency(), (KeyLatency{.count = 2}));
    histogram.add(LatencyHistogram::longest);
    QCOMPARE(histogram.latency().maximumUs, quint32(LatencyHistogram::longest.count()));
    QCOMPARE(histogram.latency().p99Us, quint32(LatencyHistogram::longest.count()));
}

void LatencyHistogramTest::timeOfASuspendedProcessIsNotCounted()
{
    LatencyHistogram histogram;
    histogram.add(7us);
    histogram.add(LatencyHistogram::longest + 1us);
    histogram.add(std::chrono::hours(100));
    QCOMPARE(histogram.latency(), (KeyLatency{.count = 1, .p50Us = 7, .p99Us = 7, .maximumUs = 7}));
}

void LatencyHistogramTest::canBeCleared()
{
    LatencyHistogram histogram;
    histogram.add(7us);
    histogram.clear();
    QCOMPARE(histogram.latency(), KeyLatency());
}

QTEST_APPLESS_MAIN(LatencyHistogramTest)
#include "latencyhistogramtest.moc"
