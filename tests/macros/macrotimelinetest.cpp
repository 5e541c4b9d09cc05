// SPDX-License-Identifier: MIT
#include "macros/macrotimeline.h"

#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Bar = MacroTimeline::Bar;

namespace {

constexpr int all = 100;
constexpr int keyA = 4, keyB = 5, keyC = 6;

QVariant press(int key, int delayMs = 0, int page = MacroRecord::keyboardPage)
{
    return MacroRecord::eventRecord({MacroRecord::keyDown, delayMs, page, static_cast<uint>(key)});
}

QVariant release(int key, int delayMs = 0, int page = MacroRecord::keyboardPage)
{
    return MacroRecord::eventRecord({MacroRecord::keyUp, delayMs, page, static_cast<uint>(key)});
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
};

QTEST_MAIN(MacroTimelineTest)
#include "macrotimelinetest.moc"
