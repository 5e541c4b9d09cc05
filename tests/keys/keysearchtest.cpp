// SPDX-License-Identifier: MIT
#include "keys/keysearch.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class KeySearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsNamesAndAssignments_data();
    void findsNamesAndAssignments();
};

void KeySearchTest::findsNamesAndAssignments_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QList<int>>("codes");
    QTest::newRow("nothing") << u""_s << QList<int>{};
    QTest::newRow("spaces") << u"  "_s << QList<int>{};
    QTest::newRow("macro") << u"Heal"_s << QList<int>{8, 225};
    QTest::newRow("letter case") << u"hEAL"_s << QList<int>{8, 225};
    QTest::newRow("part of a macro's name") << u"urst"_s << QList<int>{225};
    QTest::newRow("disabled") << u"disabled"_s << QList<int>{57};
    QTest::newRow("exact name first") << u"s"_s << QList<int>{22, 225, 229, 51};
    QTest::newRow("word of a name") << u"shift"_s << QList<int>{225, 229};
    QTest::newRow("not inside a word") << u"hift"_s << QList<int>{};
    QTest::newRow("spaces at the ends") << u" left shift "_s << QList<int>{225};
    QTest::newRow("without the space") << u"capslock"_s << QList<int>{57};
    QTest::newRow("character") << u";"_s << QList<int>{51};
    QTest::newRow("no match") << u"xyzzy"_s << QList<int>{};
    QTest::newRow("other script") << QString(u"治"_s) << QList<int>{229};
}

void KeySearchTest::findsNamesAndAssignments()
{
    QFETCH(QString, query);
    QFETCH(QList<int>, codes);
    const QList<KeySearchEntry> entries{
        {8, {u"E"_s}, {u"Macro: Heal (Play once)"_s}},
        {57, {u"Caps Lock"_s}, {u"Disable key"_s, u"Disabled"_s}},
        {225, {u"Left Shift"_s}, {u"Macro: Heal burst (Play once)"_s}},
        {22, {u"S"_s}, {}},
        {229, {u"Right Shift"_s}, {u"Macro: 治療"_s}},
        {51, {u"Semicolon"_s, u";"_s}, {}},
    };
    QCOMPARE(keysFitting(query, entries), codes);
}

QTEST_MAIN(KeySearchTest)
#include "keysearchtest.moc"
