// SPDX-License-Identifier: MIT
#include "macros/macrotimelinelayout.h"

#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Layout = MacroTimelineLayout;

namespace {

constexpr int namesWidth = 100, scaleHeight = 20, laneHeight = 10;

/// Presses and releases A and B in turn, with this pause before each event but the first.
MacroTimeline timelineOf(int events, int pauseMs)
{
    const QString pause = QString::number(pauseMs / 1000.0, 'f', 3) + u" seconds delay\n"_s;
    const QStringList lines{u"Key Press A"_s, u"Key Release A"_s, u"Key Press B"_s, u"Key Release B"_s};
    QStringList all;
    for (int event = 0; event < events; ++event) {
        if (event > 0)
            all += pause;
        all += lines.at(event % 4);
    }
    return MacroTimeline::ofLines(all, {});
}

Layout layoutWith(double pixelsPerMs, QSize size = {600, 120})
{
    Layout layout;
    layout.size = size;
    layout.namesWidth = namesWidth;
    layout.scaleHeight = scaleHeight;
    layout.laneHeight = laneHeight;
    layout.pixelsPerMs = pixelsPerMs;
    return layout;
}

QStringList labels(const QList<Layout::Tick> &ticks)
{
    QStringList texts;
    for (const Layout::Tick &tick : ticks)
        texts += tick.label;
    return texts;
}

} // namespace

class MacroTimelineLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timesAreBehindTheNames()
    {
        Layout layout = layoutWith(0.5);
        QCOMPARE(layout.xOfTime(0), namesWidth + Layout::margin);
        QCOMPARE(layout.xOfTime(200), namesWidth + Layout::margin + 100);
        layout.left = 30;
        QCOMPARE(layout.xOfTime(200), namesWidth + Layout::margin + 70);
        QCOMPARE(layout.timeOfX(layout.xOfTime(123)), 123);
        QCOMPARE(layout.laneAt(scaleHeight - 1), -1);
        QCOMPARE(layout.laneAt(scaleHeight + laneHeight), 1);
        layout.top = 15;
        QCOMPARE(layout.laneAt(scaleHeight), 1);
        QCOMPARE(layout.yOfLane(2), scaleHeight + 5);
    }

    void marksAreAtRoundTimes_data()
    {
        QTest::addColumn<double>("pixelsPerMs");
        QTest::addColumn<int>("left");
        QTest::addColumn<QStringList>("labels");
        QTest::newRow("milliseconds") << 8.0 << 0 << QStringList{u"0.00 s"_s, u"0.02 s"_s, u"0.04 s"_s, u"0.06 s"_s};
        QTest::newRow("tenths") << 0.5 << 0 << QStringList{u"0.0 s"_s, u"0.2 s"_s, u"0.4 s"_s, u"0.6 s"_s, u"0.8 s"_s};
        QTest::newRow("scrolled") << 0.5 << 450 << QStringList{u"1.0 s"_s};
        QTest::newRow("seconds") << 0.1 << 0 << QStringList{u"0 s"_s, u"1 s"_s};
    }

    void marksAreAtRoundTimes()
    {
        QFETCH(double, pixelsPerMs);
        QFETCH(int, left);
        Layout layout = layoutWith(pixelsPerMs);
        layout.left = left;
        const MacroTimeline timeline = timelineOf(11, 100); // 1 second
        QTEST(labels(layout.ticks(timeline, 100)), "labels");
        for (const Layout::Tick &tick : layout.ticks(timeline, 100))
            QVERIFY(tick.x >= namesWidth && tick.x <= layout.size.width());
    }

    void onlyThePartInViewIsFound()
    {
        Layout layout = layoutWith(1);
        const MacroTimeline timeline = timelineOf(1'000, 10);
        QCOMPARE(layout.eventsInView(timeline).first, 0);
        QCOMPARE(layout.eventsInView(timeline).end, 50); // (600 - 100 - 8) / 10
        layout.left = 1'000;
        QCOMPARE(layout.eventsInView(timeline).first, 100); // at 991 ms or later
        QCOMPARE(layout.eventsInView(timeline).end, 150);
        layout.left = 1'000'000;
        QCOMPARE(layout.eventsInView(timeline).count(), 0);
        QCOMPARE(layout.lanesInView(timeline).first, 0);
        QCOMPARE(layout.lanesInView(timeline).end, 2);
        layout.top = laneHeight;
        QCOMPARE(layout.lanesInView(timeline).first, 1);
        QCOMPARE(layout.lanesInView(MacroTimeline()).count(), 0);
        QCOMPARE(layout.eventsInView(MacroTimeline()).count(), 0);
    }

    void wholeMacroFits_data()
    {
        QTest::addColumn<int>("events");
        QTest::addColumn<int>("pauseMs");
        QTest::newRow("one event") << 1 << 0;
        QTest::newRow("no pauses") << 100 << 0;
        QTest::newRow("short") << 3 << 5;
        QTest::newRow("long") << 1'000 << 12'345;
    }

    void wholeMacroFits()
    {
        QFETCH(int, events);
        QFETCH(int, pauseMs);
        const MacroTimeline timeline = timelineOf(events, pauseMs);
        Layout layout = layoutWith(1);
        layout.pixelsPerMs = layout.fittingScale(timeline);
        QVERIFY(layout.pixelsPerMs <= Layout::largestScale);
        QVERIFY(layout.contentSize(timeline).width() <= layout.barsArea().width());
        QCOMPARE(layout.eventsInView(timeline).count(), events);
    }

    void contentStaysWithinTheRangeOfAScrollBar()
    {
        const MacroTimeline timeline = timelineOf(1'000, 2'000'000'000);
        Layout layout = layoutWith(Layout::largestScaleOf(timeline));
        QVERIFY(layout.contentSize(timeline).width() > 900'000'000);
        QVERIFY(layout.xOfEvent(timeline, 999) <= 1'000'001'000);
        QCOMPARE(Layout::largestScaleOf(timelineOf(10, 100)), Layout::largestScale);
    }

    void changedPauseMovesWhatFollows()
    {
        Layout layout = layoutWith(1);
        const MacroTimeline timeline = timelineOf(4, 100);
        layout.shiftedEvent = 2;
        layout.shiftMs = 50;
        QCOMPARE(layout.timeMs(timeline, 1), 100);
        QCOMPARE(layout.timeMs(timeline, 2), 250);
        QCOMPARE(layout.timeMs(timeline, 3), 350);
        QCOMPARE(layout.durationMs(timeline), 350);
        QCOMPARE(layout.endOfBar(timeline, timeline.bars.at(0)), layout.xOfTime(100));
        QCOMPARE(layout.endOfBar(timeline, timeline.bars.at(1)), layout.xOfTime(350));
    }

    void barsLeftDownEndBehindTheEvents()
    {
        const Layout layout = layoutWith(1);
        const MacroTimeline timeline = timelineOf(3, 100); // B is not released
        QCOMPARE(layout.endOfBar(timeline, timeline.bars.at(1)), layout.xOfTime(200) + Layout::tail);
        QVERIFY(layout.contentSize(timeline).width() >= layout.endOfBar(timeline, timeline.bars.at(1)) - namesWidth);
    }
};

QTEST_APPLESS_MAIN(MacroTimelineLayoutTest)
#include "macrotimelinelayouttest.moc"
