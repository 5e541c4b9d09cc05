// SPDX-License-Identifier: MIT
// Reading and searching a help book, and the book of the program.
#include "platform/helpbook.h"
#include "tests/support/languages.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString english = u"en"_s;

QString shippedFolder(const QString &language = english)
{
    return qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/help/"_s + language;
}

/// The structure of the page `html` without its words: the elements in their order, with their anchors and link
/// targets.
QStringList structureOf(const QString &html)
{
    static const QRegularExpression element(u"<(/?[a-z][a-z0-9]*)((?:\\s+[a-z]+=\"[^\"]*\")*)\\s*>"_s);
    QStringList elements;
    for (const QRegularExpressionMatch &match : element.globalMatch(html)) {
        if (match.captured(1) != "html"_L1) // it contains the language
            elements += match.captured(1) + match.captured(2).simplified();
    }
    return elements;
}

/// The elements whose places in a sentence may differ in another language.
bool isWithinText(const QString &element)
{
    static const QRegularExpression inText(u"^/?(a|b|i|code)\\b"_s);
    return element.contains(inText);
}

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The links of an HTML file, read without the program's own reader.
QStringList linksOf(const QString &html)
{
    static const QRegularExpression link(u"<a\\s+href=\"([^\"]*)\""_s);
    QStringList links;
    for (const QRegularExpressionMatch &match : link.globalMatch(html))
        links += match.captured(1);
    return links;
}

QStringList fileNames(const HelpBook &book)
{
    QStringList names;
    for (const HelpBook::Page &page : book.pages())
        names += page.fileName;
    return names;
}

QStringList filesFound(const HelpBook &book, const QString &query)
{
    QStringList names;
    for (const HelpBook::Hit &hit : book.search(query))
        names += book.pages().at(hit.page).fileName;
    return names;
}

} // namespace

class HelpBookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsThePagesInTheOrderOfTheirLinks();
    void readsNothingWithoutPages();
    void findsBeginningsOfWords_data();
    void findsBeginningsOfWords();
    void putsTitlesFirstThenTheMostHits();
    void quotesTheHits();

    void shippedLinksLeadSomewhere_data() { addLanguages(); }
    void shippedLinksLeadSomewhere();
    void shippedPagesAreReachable_data() { addLanguages(); }
    void shippedPagesAreReachable();
    void shippedPagesHaveTitlesAndText_data() { addLanguages(); }
    void shippedPagesHaveTitlesAndText();
    void shippedPagesSetNoColors_data() { addLanguages(); }
    void shippedPagesSetNoColors();
    void shippedPagesNameExistingCommands_data() { addLanguages(); }
    void shippedPagesNameExistingCommands();
    void everyLanguageHasTheSameContent_data() { addLanguages(); }
    void everyLanguageHasTheSameContent();
    void everyLanguageUsesTheWordsOfTheWindow_data() { addLanguages(); }
    void everyLanguageUsesTheWordsOfTheWindow();
    void shippedPagesAreFound_data();
    void shippedPagesAreFound();

private:
    static void addLanguages();
    void write(const QString &name, const QString &title, const QString &body) const;

    std::unique_ptr<QTemporaryDir> mFolder;
};

void HelpBookTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
}

void HelpBookTest::write(const QString &name, const QString &title, const QString &body) const
{
    QFile file(mFolder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(u"<html><head><title>%1</title></head><body>%2</body></html>"_s.arg(title, body).toUtf8());
}

void HelpBookTest::readsThePagesInTheOrderOfTheirLinks()
{
    write(u"index.html"_s, u"First"_s,
          u"<a href=\"c.html\">c</a> <a href=\"b.html#x\">b</a> <a href=\"c.html\">c</a> <a "
          u"href=\"https://x.example/\">x</a> "
          "<a href=\"missing.html\">m</a>"_s);
    write(u"a.html"_s, u"A &amp; more"_s, u"<p>one\n two</p><p>three</p>"_s);
    write(u"b.html"_s, QString(), u"b"_s);
    write(u"c.html"_s, u"C"_s, u"c"_s);
    write(u"note.txt"_s, u"T"_s, u"t"_s);
    const HelpBook book(mFolder->path());
    QCOMPARE(fileNames(book), QStringList({u"index.html"_s, u"c.html"_s, u"b.html"_s, u"a.html"_s}));
    QCOMPARE(book.pages().at(2).title, u"b.html"_s);
    QCOMPARE(book.pages().at(3).title, u"A & more"_s);
    QCOMPARE(book.pages().at(3).text, u"one two three"_s);
    QCOMPARE(book.indexOf(u"b.html"_s), 2);
    QCOMPARE(book.indexOf(u"missing.html"_s), -1);
}

void HelpBookTest::readsNothingWithoutPages()
{
    QVERIFY(HelpBook(mFolder->path()).pages().isEmpty());
    QVERIFY(HelpBook(mFolder->filePath(u"none"_s)).pages().isEmpty());
    QVERIFY(HelpBook().search(u"a"_s).isEmpty());
}

void HelpBookTest::findsBeginningsOfWords_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("word") << u"keyboard"_s << true;
    QTest::newRow("other case") << u"KEYBOARD"_s << true;
    QTest::newRow("beginning") << u"keyb"_s << true;
    QTest::newRow("several, any order") << u"macro key"_s << true;
    QTest::newRow("one is missing") << u"keyboard zebra"_s << false;
    QTest::newRow("inside a word") << u"board"_s << false;
    QTest::newRow("between marks") << u"macro."_s << true;
    QTest::newRow("letters with marks") << u"über"_s << true;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("no word") << u" .!"_s << false;
    QTest::newRow("pattern is no pattern") << u"k.*d"_s << false;
    QTest::newRow("Chinese, inside a sentence") << u"按键"_s << true;
    QTest::newRow("Japanese, inside a sentence") << u"キー"_s << true;
    QTest::newRow("Latin after Chinese") << u"m1"_s << true;
    QTest::newRow("Latin inside a word after Chinese") << u"1x"_s << false;
    QTest::newRow("part of the HTML") << u"href"_s << false;
}

void HelpBookTest::findsBeginningsOfWords()
{
    QFETCH(QString, query);
    QFETCH(bool, isFound);
    write(u"index.html"_s, u"Title"_s,
          u"The keyboard plays (macro). <a href=\"index.html\">Über</a> 选择按键M1x。このキー"_s);
    QCOMPARE(HelpBook(mFolder->path()).search(query).size(), isFound ? 1 : 0);
}

void HelpBookTest::putsTitlesFirstThenTheMostHits()
{
    write(u"index.html"_s, u"Start"_s, u"light"_s);
    write(u"a.html"_s, u"A"_s, u"light light"_s);
    write(u"b.html"_s, u"Light"_s, u"dark"_s);
    write(u"c.html"_s, u"C"_s, u"light"_s);
    write(u"d.html"_s, u"D"_s, u"dark"_s);
    QCOMPARE(filesFound(HelpBook(mFolder->path()), u"light"_s),
             QStringList({u"b.html"_s, u"a.html"_s, u"index.html"_s, u"c.html"_s}));
}

void HelpBookTest::quotesTheHits()
{
    const QString before = u"word "_s.repeated(30);
    write(u"index.html"_s, u"Start"_s, before + u"here it is "_s + before);
    const QString excerpt = HelpBook(mFolder->path()).search(u"here"_s).first().excerpt;
    QVERIFY2(excerpt.contains(u" here it is "_s), qPrintable(excerpt));
    QVERIFY2(excerpt.startsWith(u"… word"_s) && excerpt.endsWith(u"word …"_s), qPrintable(excerpt));
    QVERIFY(excerpt.size() < 150);
    write(u"index.html"_s, u"Start"_s, u"<h1>Start</h1><p>short</p>"_s); // the heading is not repeated
    QCOMPARE(HelpBook(mFolder->path()).search(u"short"_s).first().excerpt, u"short"_s);
}

void HelpBookTest::shippedLinksLeadSomewhere()
{
    QFETCH(QString, language);
    const QDir folder(shippedFolder(language));
    int count = 0;
    for (const QString &name : folder.entryList({u"*.html"_s})) {
        for (const QString &link : linksOf(readFile(folder.filePath(name)))) {
            const QString file = link.section(u'#', 0, 0);
            const QString anchor = link.section(u'#', 1);
            const QString target = readFile(folder.filePath(file.isEmpty() ? name : file));
            QVERIFY2(!target.isEmpty(), qPrintable(name + u": "_s + link));
            QVERIFY2(anchor.isEmpty() || target.contains(u"id=\"%1\""_s.arg(anchor)),
                     qPrintable(name + u": "_s + link));
            ++count;
        }
    }
    QVERIFY(count > 20);
}

void HelpBookTest::shippedPagesAreReachable()
{
    QFETCH(QString, language);
    const QDir folder(shippedFolder(language));
    QSet<QString> reached;
    QStringList toRead{u"index.html"_s};
    while (!toRead.isEmpty()) {
        const QString name = toRead.takeFirst();
        if (reached.contains(name))
            continue;
        reached.insert(name);
        for (const QString &link : linksOf(readFile(folder.filePath(name))))
            toRead += link.section(u'#', 0, 0);
    }
    const QStringList files = folder.entryList({u"*.html"_s});
    QCOMPARE(reached, QSet<QString>(files.begin(), files.end()));
    QVERIFY(files.size() >= 12);
    // The contents must link directly to each page, because they order the list of the window.
    const QStringList fromContents = linksOf(readFile(folder.filePath(u"index.html"_s)));
    for (const QString &name : files)
        QVERIFY2(name == "index.html"_L1 || fromContents.contains(name), qPrintable(name));
}

void HelpBookTest::shippedPagesHaveTitlesAndText()
{
    QFETCH(QString, language);
    QSet<QString> titles;
    const HelpBook book(shippedFolder(language));
    for (const HelpBook::Page &page : book.pages()) {
        QVERIFY2(page.title != page.fileName, qPrintable(page.fileName));
        QVERIFY2(page.text.startsWith(page.title), qPrintable(page.fileName)); // its heading
        QVERIFY2(page.text.size() > page.title.size() + 30, qPrintable(page.fileName));
        titles.insert(page.title);
    }
    QCOMPARE(titles.size(), book.pages().size());
}

void HelpBookTest::shippedPagesSetNoColors()
{
    QFETCH(QString, language);
    const QDir folder(shippedFolder(language));
    for (const QString &name : folder.entryList({u"*.html"_s})) {
        const QString html = readFile(folder.filePath(name));
        QVERIFY2(!html.contains(QRegularExpression(u"<style|<[^>]*(color|style)\\s*="_s)), qPrintable(name));
    }
}

void HelpBookTest::shippedPagesNameExistingCommands()
{
    QFETCH(QString, language);
    // A command of kestractl on a page must exist.
    const QString manPage = readFile(QStringLiteral(KESTRA_MAN_PAGE)).remove(u'\\');
    QVERIFY(!manPage.isEmpty());
    static const QRegularExpression command(u"<code>kestractl ([a-z-]+)( [a-z-]+)?"_s);
    int count = 0;
    const QDir folder(shippedFolder(language));
    for (const QString &name : folder.entryList({u"*.html"_s})) {
        for (const QRegularExpressionMatch &match : command.globalMatch(readFile(folder.filePath(name)))) {
            for (const QString &word : {match.captured(1), match.captured(2).trimmed()})
                QVERIFY2(manPage.contains(word), qPrintable(name + u": "_s + match.captured()));
            ++count;
        }
    }
    QVERIFY(count >= 10);
}

void HelpBookTest::addLanguages()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : languages())
        QTest::newRow(qPrintable(language)) << language;
    QVERIFY(languages().size() >= 6);
}

void HelpBookTest::everyLanguageHasTheSameContent()
{
    QFETCH(QString, language);
    const QDir original(shippedFolder());
    const QDir folder(shippedFolder(language));
    QCOMPARE(folder.entryList({u"*.html"_s}), original.entryList({u"*.html"_s}));
    for (const QString &name : original.entryList({u"*.html"_s})) {
        const QString html = readFile(folder.filePath(name));
        const QString tag = QString(language).replace(u'_', u'-');
        QVERIFY2(html.contains(u"<html lang=\"%1\">"_s.arg(tag)), qPrintable(name));
        QStringList elements = structureOf(html);
        QStringList wanted = structureOf(readFile(original.filePath(name)));
        // The places within a sentence may differ, but not the elements.
        QStringList sorted = elements;
        QStringList wantedSorted = wanted;
        sorted.sort();
        wantedSorted.sort();
        QCOMPARE(sorted.join(u'\n'), wantedSorted.join(u'\n'));
        elements.removeIf(isWithinText);
        wanted.removeIf(isWithinText);
        QCOMPARE(elements.join(u'\n'), wanted.join(u'\n'));
        if (language != english)
            QVERIFY2(html.section(u"<body>"_s, 1) != readFile(original.filePath(name)).section(u"<body>"_s, 1),
                     qPrintable(name));
    }
}

void HelpBookTest::everyLanguageUsesTheWordsOfTheWindow()
{
    QFETCH(QString, language);
    QTranslator table;
    QVERIFY(table.load(language, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/texts"_s));
    const auto text = [&table](const char *key) {
        return table.translate("", key).remove(u':').remove(u'：').trimmed();
    };
    QCOMPARE(text("lkeyHelpBookFolder"), u"help/"_s + language);
    struct Page
    {
        QString file;
        QList<const char *> keys;
    };
    const Page pages[] = {
        {u"keys.html"_s,
         {"lkeyKeysTab", "lkeyAssignFunction", "lkeyDefaultKey", "lkeySingleKey", "lkeyMacro", "lkeyProfile",
          "lkeyLaunchProgram", "lkeyDisable", "lkeyPlaybackOption", "lkeyManageMacro", "lkeyManageProfile"}},
        {u"profiles.html"_s,
         {"lkeyProfilesTab", "lkeyAddProfile", "lkeyCopy", "lkeyRename", "lkeyAssignApplication",
          "lkeyRemoveApplication", "lkeyProfileColumnAutoSwitch", "lkeyEnableOnScreenDisplay", "lkeyImport",
          "lkeyExport", "lkeyRestoreDefault"}},
        {u"macros.html"_s,
         {"lkeyMacrosTab",    "lkeyAddMacro",       "lkeyRecord",          "lkeyAppendEvents", "lkeyStop",
          "lkeyEdit",         "lkeyDeleteEvent",    "lkeyDeleteAllEvents", "lkeyCopyDelay",    "lkeyNoDelay",
          "lkeyInsertEvents", "lkeyTypeText",       "lkeyCutEvents",       "lkeyCopyEvents",   "lkeyPasteEvents",
          "lkeyMoveEventsUp", "lkeyMoveEventsDown", "lkeySetPause",        "lkeyScalePauses",  "lkeyDeleteMacro"}},
        {u"lighting.html"_s,
         {"lkeyLightingTab", "lkeyEffectFixedColor", "lkeyEffectSpectrumCycling", "lkeyZoneMain",
          "lkeyEnableAddOnHighlight", "lkeyCheckUpdates", "lkeyRestoreSettings"}},
        {u"maintenance.html"_s, {"lkeyMaintenanceTab", "lkeyLightingTab"}},
    };
    const HelpBook book(shippedFolder(language));
    for (const Page &page : pages) {
        const QString shown = book.pages().at(book.indexOf(page.file)).text;
        for (const char *key : page.keys)
            QVERIFY2(!text(key).isEmpty() && shown.contains(text(key).simplified()),
                     qPrintable(u"%1: %2, \"%3\""_s.arg(page.file, QLatin1StringView(key), text(key))));
    }
}

void HelpBookTest::shippedPagesAreFound_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("file");
    QTest::newRow("macro") << english << u"macro"_s << u"macros.html"_s;
    QTest::newRow("record on the keyboard") << english << u"recording keyboard"_s << u"on-the-fly.html"_s;
    QTest::newRow("brightness") << english << u"brightness"_s << u"lighting.html"_s;
    QTest::newRow("auto switch") << english << u"auto switch"_s << u"profiles.html"_s;
    QTest::newRow("kestractl") << english << u"kestractl"_s << u"command-line.html"_s;
    QTest::newRow("dark") << english << u"dark"_s << u"problems.html"_s;
    QTest::newRow("backup") << english << u"backup"_s << u"files.html"_s;
    QTest::newRow("game mode") << english << u"game mode command"_s << u"keys.html"_s;
    QTest::newRow("mouse") << english << u"without mouse"_s << u"window-by-keyboard.html"_s;
    // In the other languages; Chinese and Japanese are written without spaces.
    for (const auto &[language, query, file] : std::initializer_list<std::array<QString, 3>>{
             {u"de"_s, u"helligkeit"_s, u"lighting.html"_s},
             {u"de"_s, u"MAKRO aufnehmen"_s, u"on-the-fly.html"_s},
             {u"de"_s, u"sicherung"_s, u"files.html"_s},
             {u"fr"_s, u"luminosité"_s, u"lighting.html"_s},
             {u"fr"_s, u"sans souris"_s, u"window-by-keyboard.html"_s},
             {u"es"_s, u"brillo"_s, u"lighting.html"_s},
             {u"es"_s, u"grabar teclado"_s, u"on-the-fly.html"_s},
             {u"ja"_s, u"明るさ"_s, u"lighting.html"_s},
             {u"ja"_s, u"マウスなし ウィンドウ"_s, u"window-by-keyboard.html"_s},
             {u"ja"_s, u"バックアップ"_s, u"files.html"_s},
             {u"zh_Hans"_s, u"亮度"_s, u"lighting.html"_s},
             {u"zh_Hans"_s, u"备份"_s, u"files.html"_s},
             {u"zh_Hans"_s, u"鼠标"_s, u"window-by-keyboard.html"_s},
         })
        QTest::newRow(qPrintable(language + u' ' + query)) << language << query << file;
}

void HelpBookTest::shippedPagesAreFound()
{
    QFETCH(QString, language);
    QFETCH(QString, query);
    QFETCH(QString, file);
    const QStringList found = filesFound(HelpBook(shippedFolder(language)), query);
    QVERIFY2(!found.isEmpty() && found.first() == file, qPrintable(found.join(u' ')));
}

QTEST_MAIN(HelpBookTest)
#include "helpbooktest.moc"
