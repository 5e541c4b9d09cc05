// SPDX-License-Identifier: MIT
#include "macros/macroinsertion.h"
#include "macros/eventparser.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <limits>

using namespace MacroEdits;
using namespace Qt::StringLiterals;
using Kind = MacroInsertion::Kind;
using Problem = MacroInsertion::Problem;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr HidUsage keyB{.page = 7, .usage = 5};
constexpr HidUsage leftButton{.page = 9, .usage = 1};

/// A tap of A; the first event has a delay, which the list does not show.
QVariantList tapOfA()
{
    return tap(keyA, 20, 30);
}

QVariantList waits(int count)
{
    return QVariantList(count, pause(1));
}

} // namespace

class MacroInsertionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void insertsEvents_data();
    void insertsEvents();
    void insertsAPause_data();
    void insertsAPause();
    void pointsOutMissingCounterparts_data();
    void pointsOutMissingCounterparts();
    void keepsTheLimits();
};

void MacroInsertionTest::insertsEvents_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<HidUsage>("key");
    QTest::addColumn<int>("place");
    QTest::addColumn<QVariantList>("inserted");
    QTest::addColumn<QList<int>>("rows");
    QTest::newRow("press at the start") << Kind::press << keyB << 0 << QVariantList{press(keyB, 5)} << QList<int>{0};
    QTest::newRow("press in between") << Kind::press << keyB << 1 << QVariantList{press(keyB, 5)} << QList<int>{2};
    QTest::newRow("release at the end") << Kind::release << keyB << 2 << QVariantList{release(keyB, 5)}
                                        << QList<int>{4};
    QTest::newRow("tap at the start") << Kind::tap << keyB << 0 << tap(keyB, 5, 7) << QList<int>{0, 1, 2};
    QTest::newRow("tap at the end") << Kind::tap << keyB << 2 << tap(keyB, 5, 7) << QList<int>{3, 4, 5, 6};
    QTest::newRow("click") << Kind::click << leftButton << 1 << click(1, 5, 7) << QList<int>{1, 2, 3, 4};
}

void MacroInsertionTest::insertsEvents()
{
    QFETCH(Kind, kind);
    QFETCH(HidUsage, key);
    QFETCH(int, place);
    QFETCH(QVariantList, inserted);
    const MacroInsertion insertion{.kind = kind, .key = key, .pauseMs = 5, .holdMs = 7};
    const auto outcome = insertion.into(tapOfA(), place);
    QVERIFY(outcome);
    QCOMPARE(outcome->events, tapOfA().first(place) + inserted + tapOfA().sliced(place));
    QTEST(outcome->rows, "rows");
    // In an empty macro
    const auto alone = insertion.into({}, 0);
    QVERIFY(alone);
    QCOMPARE(alone->events, inserted);
    QCOMPARE(alone->rows.size(), MacroRecord::rowCount(inserted));
}

void MacroInsertionTest::insertsAPause_data()
{
    QTest::addColumn<QVariantList>("events");
    QTest::addColumn<int>("place");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QList<int>>("rows");
    const QString press = u"Key Press A"_s;
    const QString release = u"Key Release A"_s;
    QTest::newRow("longer delay") << tapOfA() << 1 << QStringList{press, u"1.030 seconds delay\n"_s, release}
                                  << QList<int>{1};
    QTest::newRow("at the end") << tapOfA() << 2
                                << QStringList{press, u"0.030 seconds delay\n"_s, release, u"1.000 seconds delay\n"_s}
                                << QList<int>{3};
    QTest::newRow("at the start") << tapOfA() << 0
                                  << QStringList{u"1.020 seconds delay\n"_s, press, u"0.030 seconds delay\n"_s, release}
                                  << QList<int>{0};
    QTest::newRow("empty macro") << QVariantList() << 0 << QStringList{u"1.000 seconds delay\n"_s} << QList<int>{0};
}

void MacroInsertionTest::insertsAPause()
{
    QFETCH(QVariantList, events);
    QFETCH(int, place);
    const auto outcome = MacroInsertion{.kind = Kind::pause, .key = {}, .pauseMs = 1000}.into(events, place);
    QVERIFY(outcome);
    QTEST(eventParser::getMessagesArray(outcome->events), "lines");
    QTEST(outcome->rows, "rows");
    QVERIFY(!outcome->addsUnpaired);
    int total = -1000;
    for (const QVariant &event : outcome->events)
        total += MacroRecord::eventFields(event.toMap()).delayMs;
    QCOMPARE(total, events.isEmpty() ? 0 : 50);
}

void MacroInsertionTest::pointsOutMissingCounterparts_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<HidUsage>("key");
    QTest::addColumn<int>("place");
    QTest::addColumn<bool>("addsUnpaired");
    QTest::newRow("press of another key") << Kind::press << keyB << 1 << true;
    QTest::newRow("release of another key") << Kind::release << keyB << 1 << true;
    QTest::newRow("second press of a held key") << Kind::press << keyA << 1 << true;
    QTest::newRow("earlier release") << Kind::release << keyA << 1 << true;
    QTest::newRow("tap within another") << Kind::tap << keyB << 1 << false;
    QTest::newRow("tap of a held key") << Kind::tap << keyA << 1 << true;
    QTest::newRow("click") << Kind::click << leftButton << 0 << false;
}

void MacroInsertionTest::pointsOutMissingCounterparts()
{
    QFETCH(Kind, kind);
    QFETCH(HidUsage, key);
    QFETCH(int, place);
    const auto outcome = MacroInsertion{.kind = kind, .key = key}.into(tapOfA(), place);
    QVERIFY(outcome);
    QTEST(outcome->addsUnpaired, "addsUnpaired");
    // The release that was missing
    const auto complete = MacroInsertion{.kind = Kind::release, .key = keyA}.into({press(keyA)}, 1);
    QVERIFY(complete && !complete->addsUnpaired);
}

void MacroInsertionTest::keepsTheLimits()
{
    const auto problemOf = [](const MacroInsertion &insertion, const QVariantList &events, int place) {
        const auto outcome = insertion.into(events, place);
        return outcome ? std::optional<Problem>() : outcome.error();
    };
    const MacroInsertion tap{.kind = Kind::tap, .key = keyA};
    const MacroInsertion press{.kind = Kind::press, .key = keyA};
    const MacroInsertion wait{.kind = Kind::pause, .key = {}, .pauseMs = 10};
    constexpr int limit = MacroRecord::maximumEvents;
    QVERIFY(problemOf(tap, waits(limit - 2), 0) == std::nullopt);
    QVERIFY(problemOf(tap, waits(limit - 1), 0) == Problem::tooManyEvents);
    QVERIFY(problemOf(press, waits(limit - 1), 5) == std::nullopt);
    QVERIFY(problemOf(press, waits(limit), 5) == Problem::tooManyEvents);
    QVERIFY(problemOf(wait, waits(limit), 5) == std::nullopt); // makes a delay longer
    QVERIFY(problemOf(wait, waits(limit), 0) == Problem::tooManyEvents);
    QVERIFY(problemOf(wait, waits(limit), limit) == Problem::tooManyEvents);
    // Of a macro that may have fewer
    QVERIFY(tap.into(waits(8), 0, 10));
    QVERIFY(!tap.into(waits(9), 0, 10));
    QVERIFY(!wait.into(waits(10), 10, 10));
    QVERIFY(wait.into(waits(10), 5, 10));
    constexpr int longest = std::numeric_limits<int>::max();
    QVERIFY(problemOf(wait, {pause(0), pause(longest - 10)}, 1) == std::nullopt);
    QVERIFY(problemOf(wait, {pause(0), pause(longest - 9)}, 1) == Problem::pauseTooLong);
}

QTEST_GUILESS_MAIN(MacroInsertionTest)
#include "macroinsertiontest.moc"
