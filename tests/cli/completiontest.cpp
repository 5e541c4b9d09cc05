// SPDX-License-Identifier: MIT
#include "cli/completion.h"
#include "cli/commandtable.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QStringList valuesOfKind(QLatin1StringView kind)
{
    if (kind == CompletionValues::profiles)
        return {u"Game"_s, u"Office"_s};
    if (kind == CompletionValues::macros)
        return {u"Combo"_s, u"Heal me"_s};
    if (kind == CompletionValues::keyboards)
        return {u"1209:0001:7"_s};
    return {u"2026-11-21"_s};
}

QStringList wordsAfter(const QStringList &words)
{
    QStringList found;
    for (const Completion &completion : completionsOf(words, valuesOfKind).words)
        found += completion.word;
    return found;
}

/// The words of a line, the last of which is empty if the line ends in a space.
QStringList wordsOf(const QString &line)
{
    return line.split(u' ');
}

} // namespace

class TestCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offersEveryCommandWithItsHelp();
    void offersEveryOptionOfACommand();
    void offersEveryKeyByANameWithoutSpaces();
    void offersWhatCanBeNext_data();
    void offersWhatCanBeNext();
    void knowsWhereFilesCanBe_data();
    void knowsWhereFilesCanBe();
};

void TestCompletion::offersEveryCommandWithItsHelp()
{
    for (const CommandRow &row : commandTable()) {
        QStringList words = QString(row.name).split(u' ');
        const Completions found = completionsOf(words, valuesOfKind);
        const auto own = std::ranges::find(found.words, words.last(), &Completion::word);
        QVERIFY2(own != found.words.end(), row.name.data());
        QCOMPARE(own->help, QString(row.help));
        words.prepend(u"help"_s);
        QVERIFY2(wordsAfter(words).contains(words.last()), row.name.data());
    }
}

void TestCompletion::offersEveryOptionOfACommand()
{
    for (const CommandRow &row : commandTable()) {
        const QStringList options = QString(row.options).split(u' ', Qt::SkipEmptyParts);
        QStringList found = wordsAfter(QString(row.name).split(u' ') + QStringList{u"-"_s});
        QCOMPARE(QSet<QString>(found.begin(), found.end()), QSet<QString>(options.begin(), options.end()));
    }
}

void TestCompletion::offersEveryKeyByANameWithoutSpaces()
{
    const QStringList names = wordsAfter({u"key"_s, QString()});
    QCOMPARE(names.size(), qsizetype(KeyLayout::selectableKeys().size()));
    qsizetype index = 0;
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const QString &name = names.at(index++);
        QVERIFY2(!name.contains(u' '), qPrintable(name));
        QVERIFY2(keyCodeForName(name) == row.code, qPrintable(name));
    }
}

void TestCompletion::offersWhatCanBeNext_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *line, const QStringList &expected) {
        QTest::newRow(line) << QString::fromLatin1(line) << expected;
    };
    row("prof", {u"profile"_s});
    row("no-such-command ", {});
    row("device re", {u"release"_s});
    row("document -", {u"--json"_s, u"--plist"_s});
    row("help history ", {u"show"_s, u"restore"_s, u"clear"_s});
    row("key A ", {u"single"_s, u"macro"_s, u"profile"_s, u"launch"_s, u"disable"_s, u"default"_s});
    row("key A macro ", {u"Combo"_s, u"Heal me"_s});
    row("key A profile ", {u"Game"_s, u"Office"_s});
    row("key A single F1", {u"F1"_s, u"F10"_s, u"F11"_s, u"F12"_s, u"F13"_s, u"F14"_s});
    row("key A single B --modifiers LeftS", {u"LeftShift"_s});
    row("key A macro Combo --repeat ", {u"once"_s, u"until-released"_s, u"until-pressed-again"_s});
    row("key A macro Combo --repeat once ", {});
    row("key A disable ", {});
    row("key --list -", {u"--json"_s});
    row("macro play ", {u"Combo"_s, u"Heal me"_s});
    row("macro play Combo --seconds ", {});
    row("macro record --seconds 3 H", {u"Heal me"_s});
    row("macro rename Combo ", {});
    row("profile switch O", {u"Office"_s});
    row("device use ", {u"1209:0001:7"_s});
    row("device use one ", {u"1209:0001:7"_s});
    row("device use --add ", {u"1209:0001:7"_s});
    row("device rule one ", {});
    row("document restore --date ", {u"2026-11-21"_s});
    row("light ", {u"on"_s, u"off"_s, u"color"_s, u"colour"_s, u"effect"_s, u"brightness"_s});
    row("light effect ", {u"fixed"_s, u"spectrum"_s});
    row("light brightness ", {u"off"_s, u"dim"_s, u"normal"_s, u"bright"_s});
    row("keyboard brightness ", {u"up"_s, u"down"_s});
    row("status ", {});
    row("--v", {u"--version"_s});
}

void TestCompletion::offersWhatCanBeNext()
{
    QFETCH(QString, line);
    QTEST(wordsAfter(wordsOf(line)), "expected");
}

void TestCompletion::knowsWhereFilesCanBe_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("expected");
    QTest::newRow("a file to read") << u"profile import "_s << true;
    QTest::newRow("a file to write") << u"macro export Combo ho"_s << true;
    QTest::newRow("a program") << u"key A launch "_s << true;
    QTest::newRow("the application of a profile") << u"profile bind Game "_s << true;
    QTest::newRow("a name") << u"macro export "_s << false;
    QTest::newRow("a command") << u"profile "_s << false;
    QTest::newRow("after the file") << u"profile import file "_s << false;
}

void TestCompletion::knowsWhereFilesCanBe()
{
    QFETCH(QString, line);
    QTEST(completionsOf(wordsOf(line), valuesOfKind).canBeFile, "expected");
}

QTEST_GUILESS_MAIN(TestCompletion)
#include "completiontest.moc"
