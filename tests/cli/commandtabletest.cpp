// SPDX-License-Identifier: MIT
#include "cli/commandtable.h"
#include "cli/keyassignments.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasEachNameOnce();
    void argumentCountsAgreeWithTheHelp();
    void manPageHasEveryCommandAndOption();
    void manPageHasEveryAssignment();

private:
    /// The man page's text, without its escapes and with single spaces; empty when it cannot be read.
    static QString manPage();
};

void TestCommandTable::hasEachNameOnce()
{
    QSet<QLatin1StringView> names;
    for (const CommandRow &row : commandTable())
        names.insert(row.name);
    QVERIFY(!names.isEmpty());
    QCOMPARE(static_cast<std::size_t>(names.size()), commandTable().size());
}

void TestCommandTable::argumentCountsAgreeWithTheHelp()
{
    for (const CommandRow &row : commandTable()) {
        const QStringList words = QString(row.arguments).split(u' ', Qt::SkipEmptyParts);
        const qsizetype optional = words.filter(u"["_s).size();
        const bool isRepeated = !words.isEmpty() && words.last().endsWith(u"..."_s);
        QCOMPARE(row.maximumArguments, isRepeated ? anyNumber : words.size());
        QCOMPARE(row.minimumArguments, words.size() - optional);
        QVERIFY(row.function != nullptr);
        QVERIFY(!row.help.isEmpty());
    }
}

void TestCommandTable::manPageHasEveryCommandAndOption()
{
    const QString page = manPage();
    QVERIFY2(!page.isEmpty(), KESTRA_MAN_PAGE);
    for (const CommandRow &row : commandTable()) {
        // "keyboard press" and "keyboard release" share a line of the synopsis, so the test looks for each word.
        const QStringList words = QString(row.name + u' ' + row.options).split(u' ', Qt::SkipEmptyParts);
        for (const QString &word : words)
            QVERIFY2(page.contains(QRegularExpression(u"(^|[\\s\"({])%1\\b"_s.arg(word))), qPrintable(word));
    }
}

void TestCommandTable::manPageHasEveryAssignment()
{
    const QString page = manPage();
    for (const AssignmentKind &kind : assignmentKinds()) {
        const QString form = u"\"key fIKEYfB %1"_s.arg(kind.word);
        QVERIFY2(page.contains(form), qPrintable(form));
        QVERIFY2(kind.option.isEmpty() || page.contains(kind.option), kind.option.data());
    }
}

QString TestCommandTable::manPage()
{
    QFile file(QStringLiteral(KESTRA_MAN_PAGE));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString page = QString::fromUtf8(file.readAll());
    return page.remove(u'\\').replace(QRegularExpression(u"\\s+"_s), u" "_s);
}

QTEST_GUILESS_MAIN(TestCommandTable)
#include "commandtabletest.moc"
