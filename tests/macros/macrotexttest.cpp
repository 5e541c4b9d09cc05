// SPDX-License-Identifier: MIT
#include "macros/macrotext.h"
#include "keys/keylayout.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace MacroEdits;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr HidUsage leftShift{.page = 7, .usage = 225};
constexpr HidUsage rightButton{.page = 9, .usage = 2};

QVariantMap with(QVariantMap event, const QString &key, const QVariant &value)
{
    event.insert(key, value);
    return event;
}

/// The events of a text, or an empty list with a message in the test's log.
QVariantList eventsOf(const QString &text)
{
    const auto content = MacroText::parse(text.toUtf8());
    if (!content)
        qWarning("%s", qPrintable(content.error().message));
    return content ? content->events : QVariantList();
}

QVariant randomNumber(QRandomGenerator &random)
{
    switch (random.bounded(7)) {
    case 0: return -1 - random.bounded(1000);
    case 1: return random.bounded(2) == 0;
    case 2: return random.bounded(10) / 2.0;
    case 3: return std::numeric_limits<int>::max();
    case 4: return qlonglong(1) << 40;
    default: return random.bounded(300);
    }
}

QVariantMap randomEvent(QRandomGenerator &random)
{
    MacroRecord::Event fields{.command = random.bounded(2),
                              .delayMs = random.bounded(3) == 0 ? 0 : random.bounded(2000),
                              .page = random.bounded(4) == 0 ? 9 : 7,
                              .argument = random.bounded(4) == 0 ? random.bounded(1U, 10U) : random.bounded(260U)};
    if (random.bounded(12) == 0)
        return pause(fields.delayMs);
    if (random.bounded(12) == 0)
        fields.page = random.bounded(12);
    QVariantMap event = MacroRecord::eventRecord(fields);
    if (random.bounded(12) == 0)
        event.insert(QStringList{u"command"_s, u"delay"_s, u"page"_s, u"argument"_s}.at(random.bounded(4)),
                     randomNumber(random));
    if (random.bounded(20) == 0)
        event.remove(u"delay"_s);
    if (random.bounded(20) == 0)
        event.insert(u"mark"_s, QVariantList{u"\u00e9 #\n\""_s, QByteArray("\0\1", 2), 0.5, true});
    return event;
}

} // namespace

class MacroTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void writes_data();
    void writes();
    void everyKeyOfTheLayoutHasItsName();
    void readsBackWhatItWrites();
    void namesReadBack_data();
    void namesReadBack();
    void errorsSayWhere_data();
    void errorsSayWhere();
    void takesAsManyEventsAsAMacroMayHave();
    void recognisesItsTexts_data();
    void recognisesItsTexts();
};

void MacroTextTest::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariantList>("events");
    const auto row = [](const char *name, const QString &text, const QVariantList &events) {
        QTest::newRow(name) << text << events;
    };
    row("nothing", {}, {});
    row("press and release", u"press A\nrelease Left Shift\n"_s, {press(keyA), release(leftShift)});
    row("any letter case", u"PRESS a\nRelease left SHIFT\n"_s, {press(keyA), release(leftShift)});
    row("legend of a key", u"press ;\n"_s, {press({.page = 7, .usage = 51})});
    row("digit is a key", u"press 4\n"_s, {press({.page = 7, .usage = 33})});
    row("key by its number", u"press 0x04\nrelease 0xE8"_s, {press(keyA), release({.page = 7, .usage = 0xE8})});
    row("tap", u"tap A\n"_s, tap(keyA));
    row("held tap", u"tap Left Shift for 30 ms\n"_s, tap(leftShift, 0, 30));
    row("tap with tabs", u"tap\tA\tFOR\t30\tms\t"_s, tap(keyA, 0, 30));
    row("buttons", u"press button 2\nrelease button 2\n"_s, {press(rightButton), release(rightButton)});
    row("click", u"click 2\n"_s, click(2));
    row("held click", u"click 2 for 1.25 s\n"_s, click(2, 0, 1250));
    row("waits add up", u"wait 100 ms\nwait 1 s\ntap A\n"_s, tap(keyA, 1100));
    row("wait at the end", u"press A\nwait 100 ms\n"_s, {press(keyA), pause(100)});
    row("wait alone", u"wait 5ms"_s, {pause(5)});
    row("no wait at the end", u"press A\nwait 0 ms\n"_s, {press(keyA)});
    row("pause", u"pause 0 ms\nwait 2 ms\npause 3 ms\npress A"_s, {pause(0), pause(5), press(keyA)});
    row("comments, empty lines and blanks", u"# a\n\n \t \n\tpress   A\t# b\n   # c"_s, {press(keyA)});
    row("line ends of other systems", u"press A\r\nrelease A\r\n"_s, {press(keyA), release(keyA)});
    row("byte order mark", u"\ufeffpress A\n"_s, {press(keyA)});
}

void MacroTextTest::reads()
{
    QFETCH(QString, text);
    QTEST(eventsOf(text), "events");
}

void MacroTextTest::writes_data()
{
    QTest::addColumn<QVariantList>("events");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QVariantList() << QString();
    QTest::newRow("taps") << tap(keyA) + tap(leftShift, 20, 30) << u"tap A\nwait 20 ms\ntap Left Shift for 30 ms\n"_s;
    QTest::newRow("interlaced") << QVariantList{
        press(leftShift, 5), press(keyA, 6),
        release(leftShift, 7)} << u"wait 5 ms\npress Left Shift\nwait 6 ms\npress A\nwait 7 ms\nrelease Left Shift\n"_s;
    QTest::newRow("buttons") << QVariantList{press(rightButton)} + click(1, 0, 9)
                             << u"press button 2\nclick 1 for 9 ms\n"_s;
    QTest::newRow("key outside the layout") << QVariantList{press({.page = 7, .usage = 100})} << u"press 0x64\n"_s;
    QTest::newRow("pause") << QVariantList{pause(250)} << u"pause 250 ms\n"_s;
}

void MacroTextTest::writes()
{
    QFETCH(QVariantList, events);
    QTEST(MacroText::write(events), "text");
}

void MacroTextTest::everyKeyOfTheLayoutHasItsName()
{
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const QVariantList events{press({.page = 7, .usage = quint16(row.code)})};
        const QString text = MacroText::write(events);
        QVERIFY2(!text.contains(u"0x"_s), qPrintable(text));
        QCOMPARE(eventsOf(text), events);
    }
}

// Compared by the digest: also the types of the numbers are the same.
void MacroTextTest::readsBackWhatItWrites()
{
    QRandomGenerator random(41);
    for (int round = 0; round < 400; ++round) {
        QVariantList events;
        for (int count = random.bounded(40); count > 0; --count)
            events += randomEvent(random);
        const QString text = MacroText::write(events);
        const QVariantList read = eventsOf(text);
        QVERIFY2(MacroRecord::digest(read) == MacroRecord::digest(events), qPrintable(text));
        QCOMPARE(MacroText::write(read), text);
    }
}

void MacroTextTest::namesReadBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("usual") << u"Combo 1"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("quotes, backslashes and a hash") << u"a \"b\" \\ # c \\u0041"_s;
    QTest::newRow("blanks") << u"  two  "_s;
    QTest::newRow("ends of lines") << u"a\nb\r\u2028c\t"_s;
    QTest::newRow("direction of text") << u"a\u202eb"_s;
    QTest::newRow("other scripts and pictures") << u"\u30de\u30af\u30ed \U0001f600"_s;
    QTest::newRow("half of a character") << QString(QChar(0xd83d));
}

void MacroTextTest::namesReadBack()
{
    QFETCH(QString, name);
    const QString line = MacroText::nameLine(name);
    QCOMPARE(line.count(u'\n'), 1);
    const auto content = MacroText::parse((u"# first\n"_s + line + u"tap A\n"_s).toUtf8());
    QVERIFY2(content, qPrintable(line));
    QCOMPARE(content->name, name);
    QCOMPARE(content->events, tap(keyA));
    QCOMPARE(MacroText::parse("tap A\n")->name, std::nullopt);
}

void MacroTextTest::errorsSayWhere_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("words"); // in the message
    QTest::newRow("unknown word") << "tap A\n  jump B\n"_ba << 2 << 3 << u"a line begins with"_s;
    QTest::newRow("unknown key") << "press  Hyper\n"_ba << 1 << 8 << u"there is no key \"Hyper\""_s;
    QTest::newRow("missing key") << "tap A\npress # A\n"_ba << 2 << 6 << u"missing"_s;
    QTest::newRow("unknown button") << "click 10\n"_ba << 1 << 7 << u"from 1 to 9"_s;
    QTest::newRow("missing button") << "press button"_ba << 1 << 13 << u"from 1 to 9"_s;
    QTest::newRow("no unit") << "\n\nwait 100\n"_ba << 3 << 6 << u"100 ms"_s;
    QTest::newRow("negative time") << "wait -1 ms"_ba << 1 << 6 << u"100 ms"_s;
    QTest::newRow("part of a millisecond") << "wait 1.5 ms"_ba << 1 << 6 << u"100 ms"_s;
    QTest::newRow("wrong hold") << "tap A for ever"_ba << 1 << 11 << u"100 ms"_s;
    QTest::newRow("time too long") << "wait 3000000 s"_ba << 1 << 6 << u"too long"_s;
    QTest::newRow("waits too long") << "wait 2147483647 ms\nwait 1 ms"_ba << 2 << 6 << u"too long"_s;
    QTest::newRow("wrong data") << "event abc!"_ba << 1 << 7 << u"Base64"_s;
    QTest::newRow("data of no event") << "event " + QByteArray("<plist><array/></plist>").toBase64() << 1 << 7
                                      << u"Base64"_s;
    QTest::newRow("wait before data") << "wait 1 ms\n" + MacroText::write({with(press(keyA), u"x"_s, 1)}).toUtf8() << 2
                                      << 7 << u"own delay"_s;
    QTest::newRow("name without quotes") << "name Combo"_ba << 1 << 6 << u"quotes"_s;
    QTest::newRow("quote in a name") << "name \"a\"b\""_ba << 1 << 8 << u"quote"_s;
    QTest::newRow("unknown escape") << "name \"a\\n\""_ba << 1 << 8 << u"four digits"_s;
    QTest::newRow("short escape") << "name \"\\u12\""_ba << 1 << 7 << u"four digits"_s;
    QTest::newRow("two names") << "name \"a\"\nname \"b\""_ba << 2 << 6 << u"already"_s;
    QTest::newRow("not UTF-8") << "tap A\npress \xff\n"_ba << 2 << 1 << u"UTF-8"_s;
    QTest::newRow("columns are characters") << "press \U0001f600 \u00e9"_ba << 1 << 7 << u"there is no key"_s;
    QTest::newRow("columns behind such characters") << "name \"\U0001f600\u00e9\" x"_ba << 1 << 6 << u"quotes"_s;
    QByteArray many;
    for (int line = 0; line < MacroRecord::maximumEvents / 2; ++line)
        many += "tap A\n";
    QTest::newRow("too many") << many + " press B" << MacroRecord::maximumEvents / 2 + 1 << 8 << u"at most 10000"_s;
}

void MacroTextTest::errorsSayWhere()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(int, column);
    QFETCH(QString, words);
    const auto content = MacroText::parse(text);
    QVERIFY(!content);
    QCOMPARE(content.error().line, line);
    QCOMPARE(content.error().column, column);
    const QString place = u"line %1, column %2: "_s.arg(line).arg(column);
    QVERIFY2(content.error().message.startsWith(place), qPrintable(content.error().message));
    QVERIFY2(content.error().message.contains(words), qPrintable(content.error().message));
}

void MacroTextTest::takesAsManyEventsAsAMacroMayHave()
{
    QVariantList full;
    while (full.size() < MacroRecord::maximumEvents)
        full += tap({.page = 7, .usage = quint16(4 + full.size() % 100)}, int(full.size()), 1);
    QCOMPARE(eventsOf(MacroText::write(full)), full);
}

void MacroTextTest::recognisesItsTexts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isMacroText");
    QTest::newRow("line") << "tap A"_ba << true;
    QTest::newRow("behind comments") << "\xef\xbb\xbf# a\r\n\n  \nPRESS what"_ba << true;
    QTest::newRow("name") << "name \"a\""_ba << true;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("comments alone") << "# a\n"_ba << false;
    QTest::newRow("mistake in the first word") << "pres A\ntap B\n"_ba << true;
    QTest::newRow("a dictionary") << "{ MacroName = M; }"_ba << false;
    QTest::newRow("an array") << "\n( tap, A )"_ba << false;
    QTest::newRow("XML") << "<?xml version=\"1.0\"?>"_ba << false;
    QTest::newRow("a binary property list") << "bplist00tap A"_ba << false;
    QTest::newRow("other bytes behind a line") << "tap A\n\xff\xfe"_ba << true;
    QTest::newRow("other bytes behind a word") << "\x7f"
                                                  "ELF\n\xff\xfe"_ba
                                               << false;
    QTest::newRow("other bytes") << "\x00\xff\xfe press"_ba << false;
}

void MacroTextTest::recognisesItsTexts()
{
    QFETCH(QByteArray, text);
    QTEST(MacroText::isMacroText(text), "isMacroText");
}

QTEST_GUILESS_MAIN(MacroTextTest)
#include "macrotexttest.moc"
