// SPDX-License-Identifier: MIT
#include "cli/commandtable.h"
#include "cli/keyassignments.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A printed line of the man page. Requests other than those for fonts stay.
QString printed(QString line)
{
    static const QRegularExpression fontRequest(u"^\\.([BIR]{1,2}) "_s);
    static const QRegularExpression word(u"\"([^\"]*)\"|(\\S+)"_s);
    line.remove(QRegularExpression(u"\\\\f[BIRP]"_s)).remove(u'\\');
    const QRegularExpressionMatch request = fontRequest.match(line);
    if (!request.hasMatch())
        return line;
    QStringList words;
    for (const QRegularExpressionMatch &match : word.globalMatch(line, request.capturedEnd()))
        words += match.captured(1) + match.captured(2);
    return words.join(request.capturedLength(1) == 2 ? u""_s : u" "_s);
}

/// The printed lines of a section of the man page; empty when it cannot be read.
QStringList section(const QString &heading)
{
    QFile file(QStringLiteral(KESTRA_MAN_PAGE));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QStringList sections = QString::fromUtf8(file.readAll()).split(u"\n.SH "_s);
    QStringList lines = sections.filter(QRegularExpression(u'^' + heading + u'\n')).value(0).trimmed().split(u'\n');
    lines.removeFirst();
    std::ranges::transform(lines, lines.begin(), printed);
    return lines;
}

/// The name of the command with which a line of kestractl begins; empty if it is not in the table.
QString commandName(const QString &line)
{
    QString name;
    for (const CommandRow &row : commandTable()) {
        if (QString(line + u' ').startsWith(row.name + u' ') && row.name.size() > name.size())
            name = row.name;
    }
    return name;
}

/// Everything that the help shows behind the name of a command.
QString writtenForms(const CommandRow &row)
{
    if (!row.forms)
        return row.arguments + u' ' + row.options;
    QString text;
    for (const CommandForm &form : row.forms())
        text += form.words + u' ';
    return text;
}

/// The arguments and options of some texts, without the signs between them, in the order of the alphabet.
QString wordsOf(const QStringList &texts)
{
    static const QRegularExpression signs(u"[\\s\\[\\]{}|]+|,?\\.\\.\\."_s);
    QStringList words = texts.join(u' ').split(signs, Qt::SkipEmptyParts);
    words.removeDuplicates();
    words.sort();
    return words.join(u' ');
}

} // namespace

class TestCommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasEachNameOnce();
    void argumentCountsAgreeWithTheHelp();
    void synopsisOfTheManPageAgreesWithTheTable();
    void headingsOfTheManPageAgreeWithTheTable();
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

void TestCommandTable::synopsisOfTheManPageAgreesWithTheTable()
{
    QMap<QString, QStringList> found;
    QStringList others;
    const QStringList lines = section(u"SYNOPSIS"_s).join(u' ').split(u".br"_s);
    for (const QString &line : lines) {
        const QString command = line.simplified().section(u' ', 1); // behind the name of the program
        const QString name = commandName(command);
        if (name.isEmpty())
            others += command;
        else
            found[name] += command;
    }
    QCOMPARE(others, (QStringList{u"help [COMMAND]"_s, u"{--help|--version}"_s}));
    for (const CommandRow &row : commandTable())
        QCOMPARE(wordsOf(found.value(row.name)), wordsOf({row.name, writtenForms(row)}));
}

void TestCommandTable::headingsOfTheManPageAgreeWithTheTable()
{
    // The synopsis has the options of each command. A heading has those alone that its text explains.
    static const QRegularExpression options(u"\\[--[^\\]]*\\]|--[a-z]+( [A-Z]+)?"_s);
    QMap<QString, QStringList> found;
    const QStringList lines = section(u"COMMANDS"_s);
    for (qsizetype line = 1; line < lines.size(); ++line) {
        if (lines.at(line - 1) != ".TP"_L1)
            continue;
        for (const QString &command : lines.at(line).split(u", "_s)) {
            const QString name = commandName(command);
            QVERIFY2(!name.isEmpty(), qPrintable(command));
            found[name] += QString(command).remove(options);
        }
    }
    for (const CommandRow &row : commandTable())
        QCOMPARE(wordsOf(found.value(row.name)), wordsOf({row.name, writtenForms(row).remove(options)}));
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
