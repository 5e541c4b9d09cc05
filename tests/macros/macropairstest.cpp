// SPDX-License-Identifier: MIT
#include "macros/macropairs.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "macros/macrotimeline.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

using namespace MacroEdits;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr HidUsage keyB{.page = 7, .usage = 5};
constexpr HidUsage leftButton{.page = 9, .usage = 1};
constexpr int none = MacroPairs::none;

} // namespace

class MacroPairsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsThePartners_data();
    void findsThePartners();
    void releasesWhatIsLeftDown();
    void agreesWithTheTimeline();
    void addsThePartners();
};

void MacroPairsTest::findsThePartners_data()
{
    QTest::addColumn<QVariantList>("events");
    QTest::addColumn<QList<int>>("partners");
    QTest::addColumn<QList<int>>("unpaired");
    QTest::addColumn<QList<int>>("leftDown");
    QTest::newRow("nothing") << QVariantList() << QList<int>() << QList<int>() << QList<int>();
    QTest::newRow("interlaced") << QVariantList{press(keyA), press(keyB), release(keyA), release(keyB)}
                                << QList<int>{2, 3, 0, 1} << QList<int>() << QList<int>();
    QTest::newRow("same number on two pages")
        << QVariantList{press({.page = 7, .usage = 5}), press({.page = 9, .usage = 5}),
                        release({.page = 9, .usage = 5}), release({.page = 7, .usage = 5})}
        << QList<int>{3, 2, 1, 0} << QList<int>() << QList<int>();
    QTest::newRow("left down") << QVariantList{press(keyA), press(leftButton), release(keyA)} << QList<int>{2, none, 0}
                               << QList<int>{1} << QList<int>{1};
    QTest::newRow("release first") << QVariantList{release(keyA), press(keyA), release(keyA)} << QList<int>{none, 2, 1}
                                   << QList<int>{0} << QList<int>();
    QTest::newRow("pressed twice") << QVariantList{press(keyA), press(keyA), release(keyA), release(keyA)}
                                   << QList<int>{none, 2, 1, none} << QList<int>{0, 3} << QList<int>();
    QTest::newRow("a pause between") << QVariantList{press(keyA), pause(9), release(keyA)} << QList<int>{2, none, 0}
                                     << QList<int>() << QList<int>();
    QTest::newRow("only the low 8 bits count")
        << QVariantList{MacroRecord::eventRecord({.command = 257, .delayMs = 0, .page = 0x107, .argument = 4}),
                        release(keyA)}
        << QList<int>{1, 0} << QList<int>() << QList<int>();
}

void MacroPairsTest::findsThePartners()
{
    QFETCH(QVariantList, events);
    const MacroPairs pairs = MacroPairs::of(events);
    QTEST(pairs.partners, "partners");
    QTEST(pairs.unpaired, "unpaired");
    QTEST(pairs.leftDown, "leftDown");
}

void MacroPairsTest::releasesWhatIsLeftDown()
{
    const QVariantList events{press(keyA), press(keyB), press(leftButton), release(keyB)};
    const QVariantList missing = MacroPairs::of(events).missingReleases;
    QCOMPARE(missing, QVariantList({release(leftButton), release(keyA)}));
    QVERIFY(MacroPairs::of(events + missing).unpaired.isEmpty());
}

// The bars of the timeline and the pairs are two views of the same presses and releases.
void MacroPairsTest::agreesWithTheTimeline()
{
    QRandomGenerator random(20);
    for (int round = 0; round < 200; ++round) {
        QVariantList events;
        for (int count = random.bounded(30); count > 0; --count) {
            const HidUsage key =
                random.bounded(5) == 0 ? leftButton : HidUsage{.page = 7, .usage = quint16(4 + random.bounded(3))};
            events += random.bounded(2) == 0 ? press(key, 1) : release(key, 1);
        }
        const MacroPairs pairs = MacroPairs::of(events);
        QList<int> openBars;
        for (const MacroTimeline::Bar &bar : MacroTimeline::of(events, MacroRecord::maximumEvents).bars) {
            if (bar.last == events.size())
                openBars += bar.first;
            else if (pairs.partners.at(bar.first) != none)
                QCOMPARE(pairs.partners.at(bar.first), bar.last);
            else // a second press ends the bar
                QCOMPARE(MacroRecord::eventFields(events.at(bar.last).toMap()).command, MacroRecord::keyDown);
        }
        QCOMPARE(pairs.leftDown, openBars);
    }
}

void MacroPairsTest::addsThePartners()
{
    const MacroPairs pairs = MacroPairs::of({press(keyA), press(keyB), release(keyA), release(keyB), release(keyB)});
    QCOMPARE(pairs.withPartners({3}), QList<int>({1, 3}));
    QCOMPARE(pairs.withPartners({4, 2, 0}), QList<int>({0, 2, 4}));
    QCOMPARE(pairs.withPartners({}), QList<int>());
}

QTEST_GUILESS_MAIN(MacroPairsTest)
#include "macropairstest.moc"
