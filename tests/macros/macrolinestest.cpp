// SPDX-License-Identifier: MIT
#include "macros/macrolines.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A record with `eventCount` events; an identifier of 0 means that it has none.
QVariantMap macro(int identifier, int eventCount, const QString &name = u"M"_s)
{
    QVariantMap record{{u"MacroName"_s, name},
                       {u"sequence"_s, QVariantMap{{u"Events"_s, QVariantList(eventCount, QVariantMap())}}}};
    if (identifier != 0)
        record[u"macroID"_s] = identifier;
    return record;
}

const QStringList oneLine{u"Key Press A"_s};
const QStringList twoLines{u"Key Press B"_s, u"0.020 seconds delay"_s};

/// Requests the lines of a macro; the daemon answers with them.
void fetch(MacroLines &lines, const QVariantMap &record, const QStringList &answer)
{
    lines.beginRequest(record);
    lines.take(answer);
    QVERIFY(lines.endRequest());
}

} // namespace

class MacroLinesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsNoLinesAtFirst();
    void showsTheAnswer();
    void withoutAnswerShowsTheLinesOfThisMacroAlone_data();
    void withoutAnswerShowsTheLinesOfThisMacroAlone();
    void linesAreOutdatedByOtherEvents_data();
    void linesAreOutdatedByOtherEvents();
    void linesThatDidNotComeAreOutdated();
    void linesBeforeTheRequestDoNotAnswerIt();
    void recordedLinesGiveWayToTheAnswer();
    void forgottenAnswerIsNotShown();
    void answerOfAnotherMacroChangesNothing();
    void linesAreNotOutdatedDuringAReplacement();
};

void MacroLinesTest::showsNoLinesAtFirst()
{
    MacroLines lines;
    QCOMPARE(lines.shown(), QStringList());
    QVERIFY(lines.areOutdatedFor(macro(1, 1)));
    QVERIFY(!lines.showReplyFor(macro(1, 1)));
}

void MacroLinesTest::showsTheAnswer()
{
    MacroLines lines;
    lines.beginRequest(macro(1, 1));
    lines.take(oneLine);
    QCOMPARE(lines.shown(), oneLine);
    QVERIFY(lines.endRequest());
    QCOMPARE(lines.shown(), oneLine);
    QVERIFY(!lines.areOutdatedFor(macro(1, 1)));
}

void MacroLinesTest::withoutAnswerShowsTheLinesOfThisMacroAlone_data()
{
    QTest::addColumn<QVariantMap>("answered");
    QTest::addColumn<QVariantMap>("requested");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("same record") << macro(1, 1) << macro(1, 1) << true;
    QTest::newRow("renamed") << macro(1, 1) << macro(1, 1, u"N"_s) << true;
    QTest::newRow("other events") << macro(1, 1) << macro(1, 2) << false;
    QTest::newRow("other identifier") << macro(1, 1) << macro(2, 1) << false;
    QTest::newRow("same record without identifier") << macro(0, 1) << macro(0, 1) << true;
    QTest::newRow("other name without identifier") << macro(0, 1) << macro(0, 1, u"N"_s) << false;
}

void MacroLinesTest::withoutAnswerShowsTheLinesOfThisMacroAlone()
{
    QFETCH(QVariantMap, answered);
    QFETCH(QVariantMap, requested);
    QFETCH(bool, isShown);
    MacroLines lines;
    fetch(lines, answered, oneLine);
    lines.append(u"recorded"_s);
    lines.beginRequest(requested);
    QVERIFY(!lines.endRequest());
    QCOMPARE(lines.shown(), isShown ? oneLine : QStringList());
}

void MacroLinesTest::linesAreOutdatedByOtherEvents_data()
{
    QTest::addColumn<QVariantMap>("current");
    QTest::addColumn<bool>("areOutdated");
    QTest::newRow("same record") << macro(1, 1) << false;
    QTest::newRow("renamed") << macro(1, 1, u"N"_s) << false;
    QTest::newRow("other events") << macro(1, 2) << true;
    QTest::newRow("other macro") << macro(2, 1) << true;
}

void MacroLinesTest::linesAreOutdatedByOtherEvents()
{
    QFETCH(QVariantMap, current);
    MacroLines lines;
    fetch(lines, macro(1, 1), oneLine);
    QTEST(lines.areOutdatedFor(current), "areOutdated");
}

void MacroLinesTest::linesThatDidNotComeAreOutdated()
{
    MacroLines lines;
    fetch(lines, macro(1, 1), oneLine);
    lines.beginRequest(macro(1, 1));
    QVERIFY(!lines.areOutdatedFor(macro(1, 1))); // the request is under way
    QVERIFY(!lines.endRequest());
    QVERIFY(lines.areOutdatedFor(macro(1, 1)));
}

void MacroLinesTest::linesBeforeTheRequestDoNotAnswerIt()
{
    MacroLines lines;
    lines.take(oneLine);
    lines.beginRequest(macro(1, 1));
    QVERIFY(!lines.endRequest());
    QCOMPARE(lines.shown(), QStringList());
}

void MacroLinesTest::recordedLinesGiveWayToTheAnswer()
{
    MacroLines lines;
    fetch(lines, macro(1, 1), oneLine);
    lines.clear();
    lines.append(u"Key Press C"_s);
    lines.append(u"Key Release C"_s);
    QCOMPARE(lines.shown(), (QStringList{u"Key Press C"_s, u"Key Release C"_s}));
    QVERIFY(lines.showReplyFor(macro(1, 1)));
    QCOMPARE(lines.shown(), oneLine);
    fetch(lines, macro(1, 2), twoLines);
    QCOMPARE(lines.shown(), twoLines);
}

void MacroLinesTest::forgottenAnswerIsNotShown()
{
    MacroLines lines;
    fetch(lines, macro(1, 1), oneLine);
    lines.forgetReply();
    QCOMPARE(lines.shown(), oneLine);
    QVERIFY(!lines.showReplyFor(macro(1, 1)));
    lines.beginRequest(macro(1, 1));
    QVERIFY(!lines.endRequest());
    QCOMPARE(lines.shown(), QStringList());
}

void MacroLinesTest::answerOfAnotherMacroChangesNothing()
{
    MacroLines lines;
    fetch(lines, macro(1, 1), oneLine);
    fetch(lines, macro(2, 2), twoLines);
    QVERIFY(!lines.showReplyFor(macro(1, 1)));
    QCOMPARE(lines.shown(), twoLines);
    QVERIFY(lines.showReplyFor(macro(2, 2)));
}

void MacroLinesTest::linesAreNotOutdatedDuringAReplacement()
{
    MacroLines lines;
    {
        const auto replacing = lines.beginReplacement();
        QVERIFY(!lines.areOutdatedFor(macro(1, 1)));
    }
    QVERIFY(lines.areOutdatedFor(macro(1, 1)));
}

QTEST_APPLESS_MAIN(MacroLinesTest)
#include "macrolinestest.moc"
