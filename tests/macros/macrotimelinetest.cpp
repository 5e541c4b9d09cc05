// SPDX-License-Identifier: MIT
#include "macros/macrotimeline.h"

#include "macros/eventparser.h"
#include "macros/macropairs.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;
using Bar = MacroTimeline::Bar;
using Rows = MacroTimeline::Rows;

namespace {

constexpr int all = 100;
constexpr int keyA = 4, keyB = 5, keyC = 6, backspace = 42, forwardDelete = 76, unnamed = 50, alsoUnnamed = 120;

QVariant press(int key, int delayMs = 0, int page = MacroRecord::keyboardPage)
{
    return MacroRecord::eventRecord({MacroRecord::keyDown, delayMs, page, static_cast<uint>(key)});
}

QVariant release(int key, int delayMs = 0, int page = MacroRecord::keyboardPage)
{
    return MacroRecord::eventRecord({MacroRecord::keyUp, delayMs, page, static_cast<uint>(key)});
}

MacroTimeline ofList(const QVariantList &events)
{
    return MacroTimeline::ofLines(eventParser::getMessagesArray(events), events);
}

} // namespace

Q_DECLARE_METATYPE(QList<MacroTimeline::Bar>)

class MacroTimelineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPressHasABar_data()
    {
        QTest::addColumn<QVariantList>("events");
        QTest::addColumn<QList<Bar>>("bars");
        QTest::addColumn<int>("lanes");
        QTest::newRow("no events") << QVariantList() << QList<Bar>() << 0;
        QTest::newRow("one after the other") << QVariantList{press(keyA), release(keyA), press(keyB), release(keyB)}
                                             << QList<Bar>{{u"A"_s, 0, 1, 0}, {u"B"_s, 2, 3, 0}} << 1;
        QTest::newRow("held together") << QVariantList{press(keyA), press(keyB), release(keyB), release(keyA)}
                                       << QList<Bar>{{u"A"_s, 0, 3, 0}, {u"B"_s, 1, 2, 1}} << 2;
        QTest::newRow("a lane that is free again")
            << QVariantList{press(keyA), press(keyB), release(keyA), press(keyC), release(keyB), release(keyC)}
            << QList<Bar>{{u"A"_s, 0, 2, 0}, {u"B"_s, 1, 4, 1}, {u"C"_s, 3, 5, 0}} << 2;
        QTest::newRow("never released") << QVariantList{press(keyA), press(keyB), release(keyB)}
                                        << QList<Bar>{{u"A"_s, 0, 3, 0}, {u"B"_s, 1, 2, 1}} << 2;
        QTest::newRow("pressed twice") << QVariantList{press(keyA), press(keyA), release(keyA)}
                                       << QList<Bar>{{u"A"_s, 0, 1, 0}, {u"A"_s, 1, 2, 0}} << 1;
        QTest::newRow("released without a press") << QVariantList{release(keyA)} << QList<Bar>() << 0;
        QTest::newRow("a mouse button beside the key of its number")
            << QVariantList{press(1, 0, MacroRecord::buttonPage), press(keyA), release(1, 0, MacroRecord::buttonPage),
                            release(keyA)}
            << QList<Bar>{{u"Left Button"_s, 0, 2, 0}, {u"A"_s, 1, 3, 1}} << 2;
        QTest::newRow("an event without a line")
            << QVariantList{press(keyA, 0, 8), press(keyB), release(keyB)} << QList<Bar>{{u"B"_s, 1, 2, 0}} << 1;
    }

    void everyPressHasABar()
    {
        QFETCH(QVariantList, events);
        const MacroTimeline timeline = MacroTimeline::of(events, all);
        QTEST(timeline.bars, "bars");
        QTEST(timeline.lanes, "lanes");
        QCOMPARE(timeline.delaysMs.size(), events.size());
    }

    void durationIsThatOfAllPausesButTheFirst()
    {
        const QVariantList events{press(keyA, 500), release(keyA, 20), press(keyB, 30), release(keyB, 40)};
        QCOMPARE(MacroTimeline::of(events, all).durationMs, 90);
        QCOMPARE(MacroTimeline::of(events, all).delaysMs, (QList<int>{0, 20, 30, 40}));
    }

    void onlyTheFirstEventsHaveBars()
    {
        const QVariantList events{press(keyA), release(keyA, 20), press(keyB, 30), release(keyB, 40)};
        const MacroTimeline timeline = MacroTimeline::of(events, 3);
        QCOMPARE(timeline.bars, (QList<Bar>{{u"A"_s, 0, 1, 0}, {u"B"_s, 2, 3, 0}}));
        QCOMPARE(timeline.delaysMs.size(), 3);
        QCOMPARE(timeline.durationMs, 90);
    }

    void everyKeyOfAListHasALane()
    {
        const MacroTimeline timeline =
            ofList({press(keyB), press(keyA, 10), release(keyB, 20), press(1, 30, MacroRecord::buttonPage),
                    release(keyA, 40), release(1, 50, MacroRecord::buttonPage), press(keyB, 60), release(keyB, 70)});
        QCOMPARE(timeline.laneNames, (QStringList{u"B"_s, u"A"_s, u"Left Button"_s}));
        QCOMPARE(timeline.lanes, 3);
        QCOMPARE(timeline.bars,
                 (QList<Bar>{{u"B"_s, 0, 2, 0}, {u"A"_s, 1, 4, 1}, {u"Left Button"_s, 3, 5, 2}, {u"B"_s, 6, 7, 0}}));
        QCOMPARE(timeline.laneBars, (QList<QList<int>>{{0, 3}, {1}, {2}}));
        QVERIFY(timeline.barsLeftDown().isEmpty());
        QVERIFY(timeline.unpairedPresses.isEmpty());
        QVERIFY(timeline.unpairedReleases.isEmpty());
    }

    void eventsOfAListHaveTheirTimes()
    {
        const MacroTimeline timeline = ofList({press(keyA, 500), release(keyA, 20), press(keyB, -5),
                                               release(keyB, 2'000'000'000), press(keyB, 2'000'000'000)});
        QCOMPARE(timeline.delaysMs, (QList<int>{0, 20, 0, 2'000'000'000, 2'000'000'000}));
        QCOMPARE(timeline.timesMs, (QList<qint64>{0, 20, 20, 2'000'000'020, 4'000'000'020}));
        QCOMPARE(timeline.durationMs, 4'000'000'020);
    }

    void rowsAreThoseOfTheList()
    {
        // The second event has no line of its own.
        const QVariantList events{press(keyA), press(keyB, 20, 8), release(keyA, 30)};
        QCOMPARE(eventParser::getMessagesArray(events).size(), 4);
        const MacroTimeline timeline = ofList(events);
        QCOMPARE(timeline.rows, (QList<Rows>{{-1, 0}, {1, -1}, {2, 3}}));
        QList<int> found;
        for (int row = -1; row <= 4; ++row)
            found += timeline.eventOfRow(row);
        QCOMPARE(found, (QList<int>{-1, 0, 1, 2, 2, -1}));
        QCOMPARE(timeline.bars, (QList<Bar>{{u"A"_s, 0, 2, 0}}));
    }

    void keysLeftDownEndWithTheEvents()
    {
        const MacroTimeline timeline = ofList(
            {press(keyA), press(keyB, 10), release(keyB, 10), press(keyC, 10), press(keyB, 10), release(keyC, 10)});
        QCOMPARE(timeline.barsLeftDown(), (QList<int>{0, 3}));
        QCOMPARE(timeline.bars.at(0), (Bar{u"A"_s, 0, 6, 0}));
        QCOMPARE(timeline.bars.at(3), (Bar{u"B"_s, 4, 6, 1}));
    }

    void eventsWithoutPartnersAreFound()
    {
        const MacroTimeline timeline =
            ofList({release(keyB), press(keyA, 10), press(keyA, 10), release(keyA, 10), release(keyA, 10)});
        QCOMPARE(timeline.unpairedReleases, (QList<Bar>{{u"B"_s, 0, 0, 0}, {u"A"_s, 4, 4, 1}}));
        QCOMPARE(timeline.unpairedPresses, (QList<int>{1}));
        QCOMPARE(timeline.bars, (QList<Bar>{{u"A"_s, 1, 2, 1}, {u"A"_s, 2, 3, 1}}));
        QVERIFY(timeline.barsLeftDown().isEmpty());
    }

    // The list marks what the remedies for the record work with.
    void unpairedRowsAreThoseOfTheRecord()
    {
        std::minstd_rand random(7);
        for (int round = 0; round < 50; ++round) {
            QVariantList events;
            for (int count = 0; count < 12; ++count) {
                const int key = keyA + static_cast<int>(random() % 3);
                events += random() % 2 == 0 ? press(key, 10) : release(key, 10);
            }
            QList<int> rows;
            for (const int index : MacroPairs::of(events).unpaired)
                rows += 2 * index; // between them are the delays
            QCOMPARE(ofList(events).unpairedRows(), rows);
        }
    }

    void keysOfOneNameHaveTheirOwnLanes_data()
    {
        QTest::addColumn<int>("one");
        QTest::addColumn<int>("other");
        QTest::newRow("Delete") << backspace << forwardDelete;
        QTest::newRow("no name") << unnamed << alsoUnnamed;
    }

    void keysOfOneNameHaveTheirOwnLanes()
    {
        QFETCH(int, one);
        QFETCH(int, other);
        const QVariantList events{press(one), press(other, 10), release(one, 10), release(other, 10)};
        const QString name = eventParser::nameOfKeyOrButton(events.first().toMap());
        QCOMPARE(ofList(events).bars, (QList<Bar>{{name, 0, 2, 0}, {name, 1, 3, 1}}));
        QVariantList afterUnknownEvent = events;
        afterUnknownEvent.prepend(press(keyA, 0, 8)); // as the first event, it has no row at all
        QCOMPARE(ofList(afterUnknownEvent).bars, (QList<Bar>{{name, 1, 3, 0}, {name, 2, 4, 1}}));
        // The dictionaries of other events do not count.
        QVariantList otherEvents = events;
        otherEvents.append(press(keyA));
        const MacroTimeline timeline = MacroTimeline::ofLines(eventParser::getMessagesArray(events), otherEvents);
        QCOMPARE(timeline.laneNames, QStringList{name});
    }

    void unknownLinesHaveNoBars()
    {
        const MacroTimeline timeline = MacroTimeline::ofLines(
            {u""_s, u"0.010 seconds delay\n"_s, u"Key Press A"_s, u"soon seconds delay\n"_s}, {});
        QCOMPARE(timeline.rows, (QList<Rows>{{-1, 0}, {1, 2}, {3, -1}}));
        QCOMPARE(timeline.bars, (QList<Bar>{{u"A"_s, 1, 3, 0}}));
        QCOMPARE(timeline.durationMs, 10);
    }

    void agreesWithTheEventsOfTheList()
    {
        QRandomGenerator random(20);
        for (int round = 0; round < 500; ++round) {
            QVariantList events;
            const int count = random.bounded(2, 12);
            for (int index = 0; index < count; ++index) {
                const int delayMs = random.bounded(100);
                switch (random.bounded(4)) {
                case 0: events += press(0, delayMs, 0); break; // a pause
                case 1: events += press(random.bounded(keyA, keyC + 1), delayMs); break;
                default: events += release(random.bounded(keyA, keyC + 1), delayMs); break;
                }
            }
            const MacroTimeline list = ofList(events);
            const MacroTimeline card = MacroTimeline::of(events, all);
            QCOMPARE(list.delaysMs, card.delaysMs);
            QCOMPARE(list.durationMs, card.durationMs);
            QCOMPARE(list.bars.size(), card.bars.size());
            for (int index = 0; index < card.bars.size(); ++index) {
                const Bar &bar = list.bars.at(index);
                QCOMPARE(bar.name, card.bars.at(index).name);
                QCOMPARE(std::pair(bar.first, bar.last),
                         std::pair(card.bars.at(index).first, card.bars.at(index).last));
            }
            for (int row = 0; row < MacroRecord::rowCount(events); ++row)
                QCOMPARE(list.eventOfRow(row), *MacroRecord::eventIndexOfRow(events, row));
        }
    }

    void emptyListHasNothing()
    {
        const MacroTimeline timeline = ofList({});
        QCOMPARE(timeline.eventCount(), 0);
        QCOMPARE(timeline.eventOfRow(0), -1);
        QVERIFY(timeline.barsLeftDown().isEmpty());
    }
};

QTEST_MAIN(MacroTimelineTest)
#include "macrotimelinetest.moc"
