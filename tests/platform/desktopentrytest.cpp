// SPDX-License-Identifier: MIT
#include "platform/desktopentry.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString entryPath = u"/usr/share/applications/a game.desktop"_s;

std::optional<DesktopEntry> entryOf(const QString &lines)
{
    return DesktopEntry::parse("[Desktop Entry]\n" + lines.toUtf8(), entryPath);
}

/// The words of an "Exec" value, each in brackets; "refused" when it must not be run.
QString words(const QString &exec, const QString &moreLines = {})
{
    const std::optional<QStringList> line = entryOf(u"Exec="_s + exec + u'\n' + moreLines)->commandLine();
    return line ? u'[' + line->join(u"] ["_s) + u']' : u"refused"_s;
}

} // namespace

class DesktopEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsOnlyItsOwnGroup();
    void needsItsGroup_data();
    void needsItsGroup();
    void resolvesEscapes_data();
    void resolvesEscapes();
    void choosesTheLanguage_data();
    void choosesTheLanguage();
    void takesTheLanguageFromTheEnvironment();
    void flagsAreTrueOrFalse();
    void splitsTheCommandLineIntoWords_data();
    void splitsTheCommandLineIntoWords();
    void sizeOfALineIsBounded_data();
    void sizeOfALineIsBounded();
    void readsTheLongestLines_data();
    void readsTheLongestLines();
    void readsFilesWithinBounds();
    void anyBytesAreReadOrRefused();
};

void DesktopEntryTest::readsOnlyItsOwnGroup()
{
    const auto entry =
        DesktopEntry::parse("# a comment\n"
                            "[Another]\nName=Other\n"
                            "[Desktop Entry]\n#Name=Comment\n  Name = A game \nComment=a=b\n\nbroken line\n"
                            "[Desktop Action new]\nName=Action\nExec=other\n",
                            entryPath);
    QVERIFY(entry);
    QCOMPARE(entry->text(u"Name"_s), u"A game"_s);
    QCOMPARE(entry->text(u"Comment"_s), u"a=b"_s);
    QCOMPARE(entry->text(u"Exec"_s), QString());
    QCOMPARE(entry->path(), entryPath);
}

void DesktopEntryTest::needsItsGroup_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no group") << QByteArray("Exec=game\n");
    QTest::newRow("another group") << QByteArray("[Desktop Action new]\nExec=game\n");
}

void DesktopEntryTest::needsItsGroup()
{
    QFETCH(QByteArray, content);
    QVERIFY(!DesktopEntry::parse(content, entryPath));
}

void DesktopEntryTest::resolvesEscapes_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("text");
    QTest::newRow("space") << uR"(a\sb)"_s << u"a b"_s;
    QTest::newRow("newline, tab, return") << uR"(a\nb\tc\rd)"_s << u"a\nb\tc\rd"_s;
    QTest::newRow("backslash") << uR"(a\\nb)"_s << uR"(a\nb)"_s;
    QTest::newRow("unknown") << uR"(a\qb)"_s << uR"(a\qb)"_s;
    QTest::newRow("at the end") << uR"(a\)"_s << uR"(a\)"_s;
}

void DesktopEntryTest::resolvesEscapes()
{
    QFETCH(QString, raw);
    QTEST(entryOf(u"Name="_s + raw)->text(u"Name"_s), "text");
}

void DesktopEntryTest::choosesTheLanguage_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("name");
    QTest::newRow("none") << u"C"_s << u"Game"_s;
    QTest::newRow("language") << u"de"_s << u"Spiel"_s;
    QTest::newRow("language and country") << u"de_CH.UTF-8"_s << u"Spiel CH"_s;
    QTest::newRow("country without an own name") << u"de_AT.UTF-8"_s << u"Spiel"_s;
    QTest::newRow("modifier") << u"sr_RS@latin"_s << u"Igra"_s;
    QTest::newRow("all three") << u"sr_ME.UTF-8@latin"_s << u"Igra ME"_s;
    QTest::newRow("unknown language") << u"fr_FR"_s << u"Game"_s;
}

void DesktopEntryTest::choosesTheLanguage()
{
    QFETCH(QString, locale);
    const auto entry = entryOf(u"Name=Game\nName[de]=Spiel\nName[de_CH]=Spiel CH\nName[sr]=wrong\nName[sr@latin]=Igra\n"
                               "Name[sr_ME@latin]=Igra ME\n"_s);
    QTEST(entry->localText(u"Name"_s, locale), "name");
}

void DesktopEntryTest::takesTheLanguageFromTheEnvironment()
{
    const QByteArray before = qgetenv("LC_ALL");
    qputenv("LC_ALL", "");
    qputenv("LC_MESSAGES", "de_CH.UTF-8");
    qputenv("LANG", "fr_FR.UTF-8");
    QCOMPARE(DesktopEntry::messagesLocale(), u"de_CH.UTF-8"_s);
    qputenv("LC_ALL", "C.UTF-8");
    QCOMPARE(DesktopEntry::messagesLocale(), u"C.UTF-8"_s);
    qputenv("LC_ALL", before);
    qunsetenv("LC_MESSAGES");
    qunsetenv("LANG");
}

void DesktopEntryTest::flagsAreTrueOrFalse()
{
    const auto entry = entryOf(u"Terminal=true\nHidden=false\nNoDisplay=1\n"_s);
    QVERIFY(entry->flag(u"Terminal"_s));
    QVERIFY(!entry->flag(u"Hidden"_s));
    QVERIFY(!entry->flag(u"NoDisplay"_s));
    QVERIFY(!entry->flag(u"Absent"_s));
}

void DesktopEntryTest::splitsTheCommandLineIntoWords_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QString>("expected");
    QTest::newRow("program") << u"game"_s << u"[game]"_s;
    QTest::newRow("arguments") << u"game  --fast\t-x"_s << u"[game] [--fast] [-x]"_s;
    QTest::newRow("quotes") << uR"("/opt/a game/run" "two words")"_s << u"[/opt/a game/run] [two words]"_s;
    QTest::newRow("quotes in a word") << uR"(game --title="two words")"_s << u"[game] [--title=two words]"_s;
    QTest::newRow("empty quotes") << uR"(game "" x)"_s << u"[game] [] [x]"_s;
    // In the file a backslash in quotes appears twice: once for the string, once for the quotes.
    QTest::newRow("escapes in quotes") << uR"(game "\\"\\`\\$\\\\")"_s << uR"([game] ["`$\])"_s;
    QTest::newRow("other backslash in quotes") << uR"(game "C:\\\\dir")"_s << uR"([game] [C:\dir])"_s;
    QTest::newRow("no shell")
        << u"game $(reboot) ; rm -rf * > x | y & `z` 'a b' ~ $HOME"_s
        << u"[game] [$(reboot)] [;] [rm] [-rf] [*] [>] [x] [|] [y] [&] [`z`] ['a] [b'] [~] [$HOME]"_s;
    QTest::newRow("files and addresses") << u"game %f %F %u %U end"_s << u"[game] [end]"_s;
    QTest::newRow("withdrawn codes") << u"game %d %D %n %N %v %m end"_s << u"[game] [end]"_s;
    QTest::newRow("file in a word") << u"game --open=%f"_s << u"[game] [--open=]"_s;
    QTest::newRow("percent") << u"game 100%% %%f"_s << u"[game] [100%] [%f]"_s;
    QTest::newRow("name") << u"game --name %c"_s << u"[game] [--name] [A Game]"_s;
    QTest::newRow("name in quotes") << uR"(game "%c!")"_s << u"[game] [A Game!]"_s;
    QTest::newRow("own file") << u"game %k"_s << u"[game] [/usr/share/applications/a game.desktop]"_s;
    QTest::newRow("icon") << u"game %i end"_s << u"[game] [--icon] [game-icon] [end]"_s;
    QTest::newRow("icon at the end") << u"game %i"_s << u"[game] [--icon] [game-icon]"_s;
    QTest::newRow("icon in a word") << u"game x%i"_s << u"[game] [x]"_s;
    QTest::newRow("other programs") << u"env WINEPREFIX=/x wine game.exe"_s
                                    << u"[env] [WINEPREFIX=/x] [wine] [game.exe]"_s;
    QTest::newRow("unknown code") << u"game %x"_s << u"refused"_s;
    QTest::newRow("lone percent") << u"game %"_s << u"refused"_s;
    QTest::newRow("open quote") << uR"(game "x)"_s << u"refused"_s;
    QTest::newRow("open quote after a backslash") << uR"(game "x\\)"_s << u"refused"_s;
    QTest::newRow("empty") << QString() << u"refused"_s;
    QTest::newRow("blank") << u"   "_s << u"refused"_s;
    QTest::newRow("code alone") << u"%f"_s << u"refused"_s;
    QTest::newRow("no program") << uR"("" x)"_s << u"refused"_s;
}

void DesktopEntryTest::splitsTheCommandLineIntoWords()
{
    QFETCH(QString, exec);
    QTEST(words(exec, u"Name=A Game\nIcon=game-icon\n"_s), "expected");
    if (exec.contains("%i"_L1))
        QVERIFY(!words(exec).contains("--icon"_L1)); // without an icon
}

// A line that repeats a name of half a megabyte 100,000 times would take 50 GB.
void DesktopEntryTest::sizeOfALineIsBounded_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("key");
    QTest::newRow("name") << u"%c"_s << u"Name"_s;
    QTest::newRow("icon") << u"%i"_s << u"Icon"_s;
}

void DesktopEntryTest::sizeOfALineIsBounded()
{
    QFETCH(QString, code);
    QFETCH(QString, key);
    const auto line = [&](int times, qsizetype size) {
        return entryOf(u"Exec=game"_s + (u' ' + code).repeated(times) + u'\n' + key + u'=' + QString(size, u'x')
                       + u'\n')
            ->commandLine();
    };
    QVERIFY(line(2, 500'000));
    QVERIFY(!line(3, 500'000));
    QVERIFY(!line(100'000, 500'000));
}

// One character must not cost as much as the rest of the line, or as the whole icon.
void DesktopEntryTest::readsTheLongestLines_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<qsizetype>("length"); // of the last word
    QTest::newRow("backslashes in quotes")
        << u"game \""_s + uR"(\\\\)"_s.repeated(250'000) + u'"' << QString() << qsizetype(250'000);
    QTest::newRow("icons in a word") << u"game "_s + u"x%i"_s.repeated(150'000) << QString(500'000, u'x')
                                     << qsizetype(150'000);
    QTest::newRow("codes") << u"game "_s + u"%%"_s.repeated(500'000) << QString() << qsizetype(500'000);
}

void DesktopEntryTest::readsTheLongestLines()
{
    QFETCH(QString, exec);
    QFETCH(QString, icon);
    const auto line = entryOf(u"Exec="_s + exec + u"\nIcon="_s + icon)->commandLine();
    QVERIFY(line);
    QTEST(line->constLast().size(), "length");
}

void DesktopEntryTest::readsFilesWithinBounds()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"game.desktop"_s);
    QVERIFY(!DesktopEntry::read(path));
    QVERIFY(!DesktopEntry::read(folder.path()));
    writeFile(path, "[Desktop Entry]\r\nName=Game\r\nExec=game\r\n");
    const auto entry = DesktopEntry::read(path);
    QVERIFY(entry);
    QCOMPARE(entry->text(u"Name"_s), u"Game"_s);
    QCOMPARE(entry->path(), path);
    QVERIFY(QFile::resize(path, DesktopEntry::maximumFileBytes + 1));
    QVERIFY(!DesktopEntry::read(path));
}

void DesktopEntryTest::anyBytesAreReadOrRefused()
{
    QRandomGenerator random(46);
    const QByteArray alphabet = "[Desktop Entry]\nExec=%ifck\"\\ $\xff\x00Name";
    for (int round = 0; round < 5000; ++round) {
        QByteArray content = "[Desktop Entry]\nExec=";
        for (int count = random.bounded(60); count > 0; --count)
            content += alphabet.at(random.bounded(int(alphabet.size())));
        const auto entry = DesktopEntry::parse(content, entryPath);
        QVERIFY(entry);
        const auto line = entry->commandLine();
        QVERIFY(!line || !line->constFirst().isEmpty());
    }
}

QTEST_APPLESS_MAIN(DesktopEntryTest)
#include "desktopentrytest.moc"
