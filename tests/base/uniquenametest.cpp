// SPDX-License-Identifier: MIT
#include "base/uniquename.h"
#include "tests/support/testmain.h"
#include "tests/support/threadusage.h"

#include <QtTest>

#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The documented rule, pass by pass.
QString namedByPasses(const QStringList &names, const QString &base)
{
    QString candidate = base;
    qsizetype matches = 0;
    for (qsizetype pass = 0; pass < names.size(); ++pass) {
        for (const QString &name : names)
            matches += candidate == name ? 1 : 0;
        if (matches > 0)
            candidate = base + u'(' + QString::number(matches + 1) + u')';
    }
    return matches == 0 ? base : base + u'(' + QString::number(matches + 1) + u')';
}

} // namespace

class UniqueNameTest : public QObject
{
    Q_OBJECT

private slots:
    void namesByTheRule_data();
    void namesByTheRule();
    void agreesWithTheRulePassByPass();
    void isNeverTaken();
    void isQuickForLongChains();
};

void UniqueNameTest::namesByTheRule_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *title, const QString &names, const QString &base, const QString &expected) {
        QTest::newRow(title) << (names.isNull() ? QStringList() : names.split(u'|')) << base << expected;
    };
    row("no names", QString(), u"A"_s, u"A"_s);
    row("no hit", u"B|C"_s, u"A"_s, u"A"_s);
    row("base free although base(2) is taken", u"A(2)"_s, u"A"_s, u"A"_s);
    row("one hit", u"A"_s, u"A"_s, u"A(2)"_s);
    row("chain of two", u"A|A(2)"_s, u"A"_s, u"A(3)"_s);
    row("chain in any order", u"A(2)|A"_s, u"A"_s, u"A(3)"_s);
    row("twice the same counts twice", u"A|A"_s, u"A"_s, u"A(3)"_s);
    row("free slot below is not taken", u"A|A|A(2)"_s, u"A"_s, u"A(3)"_s);
    row("count jumps over what it does not reach", u"A|A|A(3)"_s, u"A"_s, u"A(4)"_s);
    row("higher suffix out of reach", u"A|A(3)"_s, u"A"_s, u"A(2)"_s);
    row("duplicate in the middle of the chain", u"A|A(2)|A(2)|A(3)"_s, u"A"_s, u"A(4)"_s);
    row("whole list is one chain", u"A|A(2)|A(3)|A(4)"_s, u"A"_s, u"A(5)"_s);
    row("other case is another name", u"a|a(2)"_s, u"A"_s, u"A"_s);
    row("other normal form is another name", u"e\u0301"_s, u"\u00e9"_s, u"\u00e9"_s);
    row("base with a suffix of its own", u"A(2)"_s, u"A(2)"_s, u"A(2)(2)"_s);
    row("base with placeholders", u"%1 %2 %@"_s, u"%1 %2 %@"_s, u"%1 %2 %@(2)"_s);
    row("empty base", u"|x"_s, u""_s, u"(2)"_s);
}

void UniqueNameTest::namesByTheRule()
{
    QFETCH(QStringList, names);
    QFETCH(QString, base);
    QFETCH(QString, expected);
    QCOMPARE(namedByPasses(names, base), expected);
    QCOMPARE(uniqueName(names, base), expected);
}

void UniqueNameTest::agreesWithTheRulePassByPass()
{
    std::mt19937 random(20110517);
    for (int round = 0; round < 3000; ++round) {
        QStringList names;
        const auto count = random() % 12;
        for (unsigned i = 0; i < count; ++i) {
            const auto suffix = random() % 9;
            names.append(suffix < 2 ? u"A"_s : u"A(%1)"_s.arg(suffix));
        }
        QCOMPARE(uniqueName(names, u"A"_s), namedByPasses(names, u"A"_s));
    }
}

void UniqueNameTest::isNeverTaken()
{
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        QStringList names;
        for (int i = 0; i < 8; ++i)
            names.append(random() % 2 ? u"A"_s : u"A(%1)"_s.arg(2 + random() % 10));
        QVERIFY(!names.contains(uniqueName(names, u"A"_s)));
    }
}

void UniqueNameTest::isQuickForLongChains()
{
    constexpr int count = 20'000; // pass by pass, this takes 400 million comparisons
    QStringList names{u"A"_s};
    for (int i = 2; i <= count; ++i)
        names.append(u"A(%1)"_s.arg(i));
    const auto start = processorTime();
    QCOMPARE(uniqueName(names, u"A"_s), u"A(%1)"_s.arg(count + 1));
    const std::chrono::nanoseconds taken = processorTime() - start;
    QVERIFY2(taken < 2s, qPrintable(QString::number(taken.count())));
}

QTEST_GUILESS_MAIN(UniqueNameTest)
#include "uniquenametest.moc"
