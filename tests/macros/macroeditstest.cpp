// SPDX-License-Identifier: MIT
#include "macros/macroedits.h"
#include "macros/eventparser.h"
#include "macros/macropairs.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;
using namespace MacroEdits;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr HidUsage keyB{.page = 7, .usage = 5};
constexpr int longest = MacroRecord::maximumDelayMs;

// press A, press B, release A, release B
const QVariantList &sample()
{
    static const QVariantList events{press(keyA, 10), press(keyB, 20), release(keyA, 30), release(keyB, 40)};
    return events;
}

int delayOf(const QVariant &event)
{
    return MacroRecord::eventFields(event.toMap()).delayMs;
}

QList<int> delays(const std::optional<QVariantList> &events)
{
    QList<int> result;
    for (const QVariant &event : events.value_or(QVariantList()))
        result += delayOf(event);
    return result;
}

QVariantList picked(const QVariantList &events, const QList<int> &indexes)
{
    QVariantList result;
    for (const int index : indexes)
        result += events.at(index);
    return result;
}

/// Pairs of different keys, with random delays. Each event says which pair it belongs to.
QVariantList markedPairs(QRandomGenerator &random, int pairs)
{
    QVariantList events;
    for (int pair = 0; pair < pairs; ++pair) {
        const HidUsage key{.page = 7, .usage = quint16(4 + pair)};
        for (QVariantMap event : {press(key, random.bounded(50)), release(key, random.bounded(50))}) {
            event.insert(u"pair"_s, pair);
            events += event;
        }
    }
    return events;
}

int pairOf(const QVariant &event)
{
    return event.toMap().value(u"pair"_s).toInt();
}

/// Whether each event has the other half of its own pair as its partner.
bool arePairsKept(const QVariantList &events)
{
    const MacroPairs pairs = MacroPairs::of(events);
    for (qsizetype index = 0; index < events.size(); ++index) {
        const int partner = pairs.partners.at(index);
        if (partner == MacroPairs::none || pairOf(events.at(partner)) != pairOf(events.at(index)))
            return false;
    }
    return true;
}

} // namespace

class MacroEditsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesEvents();
    void pauseIsADelayAlone();
    void inserts_data();
    void inserts();
    void keepsTheLimitOfEvents();
    void insertsAPause();
    void removes();
    void removesAsTheListDoes();
    void moves_data();
    void moves();
    void setsDelays();
    void scalesDelays_data();
    void scalesDelays();
    void copies();
    void missingIndexesAreAbsent();
    void delaysOutOfBoundsAreAbsent();
    void keepsFurtherKeys();
    void anyEditsOfPairsKeepThem();
};

void MacroEditsTest::makesEvents()
{
    QCOMPARE(press(keyA, 5), QVariantMap({{u"command"_s, 1}, {u"delay"_s, 5}, {u"page"_s, 7}, {u"argument"_s, 4}}));
    QCOMPARE(release(keyA), QVariantMap({{u"command"_s, 0}, {u"delay"_s, 0}, {u"page"_s, 7}, {u"argument"_s, 4}}));
    QCOMPARE(tap(keyB, 5, 6), QVariantList({press(keyB, 5), release(keyB, 6)}));
    QCOMPARE(eventParser::getMessagesArray(click(2, 5, 1500)),
             QStringList({u"Right Button down\n"_s, u"1.500 seconds delay\n"_s, u"Right Button up\n"_s}));
}

void MacroEditsTest::pauseIsADelayAlone()
{
    QCOMPARE(eventParser::getMessagesArray({press(keyA), pause(250)}),
             QStringList({u"Key Press A"_s, u"0.250 seconds delay\n"_s}));
    QVERIFY(MacroRecord::isWellFormedEvent(pause(250)));
}

void MacroEditsTest::inserts_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("first") << 0 << QList<int>{1, 2, 10, 20, 30, 40};
    QTest::newRow("inside") << 2 << QList<int>{10, 20, 1, 2, 30, 40};
    QTest::newRow("end") << 4 << QList<int>{10, 20, 30, 40, 1, 2};
    QTest::newRow("behind the end") << 5 << QList<int>();
    QTest::newRow("negative") << -1 << QList<int>();
}

void MacroEditsTest::inserts()
{
    QFETCH(int, index);
    QTEST(delays(inserting(sample(), index, tap(keyA, 1, 2))), "expected");
}

void MacroEditsTest::keepsTheLimitOfEvents()
{
    const QVariantList nearlyFull(MacroRecord::maximumEvents - 1, press(keyA));
    QVERIFY(inserting(nearlyFull, 3, {press(keyB)}));
    QVERIFY(!inserting(nearlyFull, 3, tap(keyB)));
    const QVariantList full(MacroRecord::maximumEvents, press(keyA));
    QVERIFY(!insertingPause(full, int(full.size()), 1));
    QVERIFY(insertingPause(full, 5, 1));
}

void MacroEditsTest::insertsAPause()
{
    QCOMPARE(delays(insertingPause(sample(), 1, 100)), QList<int>({10, 120, 30, 40}));
    QCOMPARE(insertingPause(sample(), 4, 100), sample() + QVariantList{pause(100)});
    QCOMPARE(insertingPause({}, 0, 100), QVariantList{pause(100)});
    QCOMPARE(delays(insertingPause({press(keyA, -5)}, 0, 100)), QList<int>{100}); // a negative one counts as 0
    QVERIFY(!insertingPause(sample(), 5, 100));
    QVERIFY(!insertingPause({press(keyA, longest)}, 0, 1));
}

void MacroEditsTest::removes()
{
    QCOMPARE(removing(sample(), {3, 1, 3}), picked(sample(), {0, 2}));
    QCOMPARE(removing(sample(), {}), sample());
    QCOMPARE(removing(sample(), {0, 1, 2, 3}), QVariantList());
}

// The list deletes one event by its row, together with the pause before it.
void MacroEditsTest::removesAsTheListDoes()
{
    QVariantList events = sample();
    events.insert(2, pause(50));
    for (int row = 0; row < MacroRecord::rowCount(events); ++row)
        QCOMPARE(removing(events, {*MacroRecord::eventIndexOfRow(events, row)}),
                 MacroRecord::removingEventOfRow(events, row));
}

void MacroEditsTest::moves_data()
{
    QTest::addColumn<QList<int>>("indexes");
    QTest::addColumn<int>("before");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("up") << QList<int>{3} << 0 << QList<int>{40, 10, 20, 30};
    QTest::newRow("down") << QList<int>{0} << 2 << QList<int>{20, 10, 30, 40};
    QTest::newRow("to the end") << QList<int>{0} << 4 << QList<int>{20, 30, 40, 10};
    QTest::newRow("several become neighbours") << QList<int>{3, 0} << 2 << QList<int>{20, 10, 40, 30};
    QTest::newRow("to its own place") << QList<int>{1} << 1 << QList<int>{10, 20, 30, 40};
    QTest::newRow("behind itself") << QList<int>{1} << 2 << QList<int>{10, 20, 30, 40};
    QTest::newRow("all") << QList<int>{0, 1, 2, 3} << 2 << QList<int>{10, 20, 30, 40};
    QTest::newRow("none") << QList<int>() << 2 << QList<int>{10, 20, 30, 40};
    QTest::newRow("behind the end") << QList<int>{0} << 5 << QList<int>();
    QTest::newRow("before the start") << QList<int>{0} << -1 << QList<int>();
}

void MacroEditsTest::moves()
{
    QFETCH(QList<int>, indexes);
    QFETCH(int, before);
    QTEST(delays(moving(sample(), indexes, before)), "expected");
}

void MacroEditsTest::setsDelays()
{
    QCOMPARE(delays(settingDelays(sample(), {0, 2}, 7)), QList<int>({7, 20, 7, 40}));
    QCOMPARE(delays(settingDelays(sample(), {3}, longest)), QList<int>({10, 20, 30, longest}));
}

void MacroEditsTest::scalesDelays_data()
{
    QTest::addColumn<int>("delayMs");
    QTest::addColumn<double>("factor");
    QTest::addColumn<int>("expected");
    QTest::newRow("half") << 100 << 0.5 << 50;
    QTest::newRow("rounded up") << 3 << 0.5 << 2;
    QTest::newRow("rounded down") << 3 << 0.4 << 1;
    QTest::newRow("none") << 100 << 0.0 << 0;
    QTest::newRow("beyond the longest") << longest << 1.5 << longest;
    QTest::newRow("negative") << -100 << 2.0 << 0;
}

void MacroEditsTest::scalesDelays()
{
    QFETCH(int, delayMs);
    QFETCH(double, factor);
    QFETCH(int, expected);
    QCOMPARE(delays(scalingDelays({press(keyA, delayMs), release(keyA, 8)}, {0}, factor)), QList<int>({expected, 8}));
}

void MacroEditsTest::copies()
{
    QCOMPARE(copied(sample(), {2, 0, 2}), picked(sample(), {0, 2}));
    QCOMPARE(inserting({pause(1)}, 1, *copied(sample(), {1, 3})), QVariantList{pause(1)} + picked(sample(), {1, 3}));
}

void MacroEditsTest::missingIndexesAreAbsent()
{
    for (const int index : {-1, 4, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        QVERIFY(!removing(sample(), {0, index}));
        QVERIFY(!moving(sample(), {0, index}, 0));
        QVERIFY(!settingDelays(sample(), {0, index}, 1));
        QVERIFY(!scalingDelays(sample(), {0, index}, 1));
        QVERIFY(!copied(sample(), {0, index}));
    }
}

void MacroEditsTest::delaysOutOfBoundsAreAbsent()
{
    QVERIFY(!settingDelays(sample(), {0}, -1));
    QVERIFY(!insertingPause(sample(), 0, -1));
    QVERIFY(!insertingPause(sample(), 4, -1));
    for (const double factor :
         {-0.1, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        QVERIFY(!scalingDelays(sample(), {0}, factor));
}

void MacroEditsTest::keepsFurtherKeys()
{
    QVariantMap further = press(keyA, 10);
    further.insert(u"mark"_s, u"kept"_s);
    const auto first = [](const std::optional<QVariantList> &events) {
        return events.value_or(QVariantList()).value(0);
    };
    further.insert(u"delay"_s, 20);
    const QVariantList events{further};
    QCOMPARE(first(scalingDelays(events, {0}, 1)), QVariant(further));
    QCOMPARE(first(settingDelays(events, {0}, 20)), QVariant(further));
    QCOMPARE(first(insertingPause(events, 0, 0)), QVariant(further));
    QCOMPARE(first(copied(events, {0})), QVariant(further));
}

// Each pair has a key of its own. Whatever is done with whole pairs, each press keeps its own release, and no event is
// lost or made up.
void MacroEditsTest::anyEditsOfPairsKeepThem()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 60; ++round) {
        QVariantList events = markedPairs(random, 40);
        int nextPair = 40;
        for (int step = 0; step < 30; ++step) {
            const MacroPairs pairs = MacroPairs::of(events);
            QList<int> chosen;
            for (int index = 0; index < events.size(); ++index) {
                if (random.bounded(8) == 0)
                    chosen += index;
            }
            chosen = pairs.withPartners(chosen);
            const int place = random.bounded(int(events.size()) + 1);
            const QVariantList before = events;
            switch (random.bounded(4)) {
            case 0: events = moving(events, chosen, place).value(); break;
            case 1: events = scalingDelays(events, chosen, random.bounded(3.0)).value(); break;
            case 2: events = removing(events, chosen).value(); break;
            default: {
                QVariantList inserted;
                for (QVariant event : tap({.page = 7, .usage = quint16(4 + nextPair)}, 3, 4)) {
                    QVariantMap fields = event.toMap();
                    fields.insert(u"pair"_s, nextPair);
                    inserted += fields;
                }
                ++nextPair;
                events = inserting(events, place, inserted).value();
            }
            }
            QVERIFY2(arePairsKept(events), qPrintable(u"round %1, step %2"_s.arg(round).arg(step)));
            if (events.size() == before.size()) {
                QList<int> sorted, sortedBefore;
                for (const QVariant &event : events)
                    sorted += pairOf(event);
                for (const QVariant &event : before)
                    sortedBefore += pairOf(event);
                std::ranges::sort(sorted);
                std::ranges::sort(sortedBefore);
                QCOMPARE(sorted, sortedBefore);
            }
        }
    }
}

QTEST_GUILESS_MAIN(MacroEditsTest)
#include "macroeditstest.moc"
