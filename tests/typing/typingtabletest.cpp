// SPDX-License-Identifier: MIT
#include "typing/typingtable.h"
#include "platform/keymap.h"
#include "tests/support/testmain.h"
#include "tests/support/textreader.h"

#include <QTest>
#include <xkbcommon/xkbcommon.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint8 leftShift = 225;
constexpr quint8 altGr = 230;

/// A table for `map`, to which it keeps a reference.
TypingTable tableFor(const std::shared_ptr<xkb_keymap> &map, quint32 layout = 0)
{
    return TypingTable(Keymap(xkb_keymap_ref(map.get()), layout));
}

QString written(const QList<Keystroke> &keystrokes)
{
    QStringList words;
    for (const Keystroke &keystroke : keystrokes) {
        QStringList keys;
        for (int index = 0; index < keystroke.modifierCount; ++index)
            keys += keystroke.modifiers.at(index) == leftShift ? u"Shift"_s
                    : keystroke.modifiers.at(index) == altGr   ? u"AltGr"_s
                                                               : QString::number(keystroke.modifiers.at(index));
        keys += QString::number(keystroke.key);
        words += keys.join(u'+');
    }
    return words.join(u' ');
}

} // namespace

class TypingTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void charactersHaveTheirKeystrokes_data();
    void charactersHaveTheirKeystrokes();
    void typesInTheLayoutInUse();
    void typesWithTheComposeKey();
    void pressesModifiersInTheOrderThatWorks();
    void usesNoKeysThatLock();
    void nullKeymapTypesNothing();
};

void TypingTableTest::charactersHaveTheirKeystrokes_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("keystrokes"); // usages of the Keyboard/Keypad page
    const auto row = [](const char *layout, const QString &text, const QString &keystrokes) {
        QTest::addRow("%s %s", layout, qPrintable(text)) << QString::fromLatin1(layout) << text << keystrokes;
    };
    row("us", u"a"_s, u"4"_s);
    row("us", u"A"_s, u"Shift+4"_s);
    row("us", u"1"_s, u"30"_s); // not on the numeric keypad
    row("us", u"+"_s, u"Shift+46"_s);
    row("us", u"*"_s, u"Shift+37"_s);
    row("us", u"\\"_s, u"49"_s);
    row("us", u"\n"_s, u"40"_s);
    row("us", u"\t"_s, u"43"_s);
    row("us", u" "_s, u"44"_s);
    row("us", u"é"_s, QString());
    row("us", u"й"_s, QString());
    row("us", u"\x1b"_s, QString());
    row("us", u"\b"_s, QString());
    row("de", u"z"_s, u"28"_s);
    row("de", u"ä"_s, u"52"_s);
    row("de", u"@"_s, u"AltGr+20"_s);
    row("de", u"€"_s, u"AltGr+8"_s);
    row("de", u"¿"_s, u"Shift+AltGr+45"_s);
    row("de", u"ê"_s, u"53 8"_s);
    row("de", u"É"_s, u"46 Shift+8"_s);
    row("de", u"^"_s, u"53 44"_s); // dead key and space
    row("fr", u"a"_s, u"20"_s);
    row("fr", u"1"_s, u"Shift+30"_s);
    row("fr", u"é"_s, u"31"_s);
    row("fr", u"ê"_s, u"47 8"_s);
    row("fr", u"ë"_s, u"Shift+47 8"_s);
    row("fr", u"{"_s, u"AltGr+33"_s);
    row("fr", u"Ç"_s, QString());
    row("es", u"ñ"_s, u"51"_s);
    row("es", u"á"_s, u"52 4"_s);
    row("es", u"ü"_s, u"Shift+52 24"_s);
    row("es", u"#"_s, u"AltGr+32"_s);
    row("ru", u"й"_s, u"20"_s);
    row("ru", u"№"_s, u"Shift+32"_s);
    row("ru", u"a"_s, QString());
    row("jp", u"\""_s, u"Shift+31"_s);
    row("jp", u"@"_s, u"47"_s);
    row("jp", u"_"_s, u"Shift+135"_s);
    row("jp", u"あ"_s, QString());
    row("fr(bepo)", u"é"_s, u"26"_s);
    row("de(neo)", u"a"_s, u"7"_s);
    row("de(neo)", u"{"_s, u"49+7"_s); // its third level is on the key left of Return
}

void TypingTableTest::charactersHaveTheirKeystrokes()
{
    QFETCH(QString, layout);
    QFETCH(QString, text);
    const Keymap keymap = Keymap::fromDescription(layout);
    QVERIFY(!keymap.isNull());
    QTEST(written(TypingTable(keymap, "en_US.UTF-8").keystrokesOf(text)), "keystrokes");
}

void TypingTableTest::typesInTheLayoutInUse()
{
    const std::shared_ptr<xkb_keymap> map = systemKeymap("us,ru");
    QVERIFY(map);
    const TypingTable russian = tableFor(map, 1);
    QCOMPARE(written(russian.keystrokesOf(u"й"_s)), u"20"_s);
    QCOMPARE(written(russian.keystrokesOf(u"q"_s)), QString());
    const TypingTable american = tableFor(map, 0);
    QCOMPARE(written(american.keystrokesOf(u"q"_s)), u"20"_s);
    QCOMPARE(written(american.keystrokesOf(u"й"_s)), QString());
}

void TypingTableTest::typesWithTheComposeKey()
{
    const std::shared_ptr<xkb_keymap> map = systemKeymap("us", "", "compose:ralt");
    QVERIFY(map);
    const TypingTable table = tableFor(map);
    QCOMPARE(written(table.keystrokesOf(u"é"_s)), u"230 52 8"_s); // Compose, apostrophe, e
    QCOMPARE(table.keystrokesOf(u"€"_s).size(), 3);
    QCOMPARE(table.keystrokesOf(u"e"_s).size(), 1);
}

void TypingTableTest::pressesModifiersInTheOrderThatWorks()
{
    // In this layout the right Alt key is AltGr alone, and the Compose key while Shift is down.
    const std::shared_ptr<xkb_keymap> map = systemKeymap("de", "", "lv3:ralt_switch_multikey");
    QVERIFY(map);
    const TypingTable table = tableFor(map);
    QCOMPARE(written(table.keystrokesOf(u"@"_s)), u"AltGr+20"_s);
    QCOMPARE(written(table.keystrokesOf(u"¿"_s)), u"AltGr+Shift+45"_s);
}

void TypingTableTest::usesNoKeysThatLock()
{
    // Shift latches the third level, and Caps Lock locks it.
    const std::shared_ptr<xkb_keymap> map = systemKeymap("us", "", "caps:shiftlock");
    QVERIFY(map);
    const TypingTable table = tableFor(map);
    QCOMPARE(written(table.keystrokesOf(u"A"_s)), u"Shift+4"_s);
    constexpr quint8 capsLock = 57;
    for (const QString &text : table.texts()) {
        for (const Keystroke &keystroke : table.keystrokesOf(text)) {
            QVERIFY(keystroke.key != capsLock);
            QVERIFY(!std::ranges::count(keystroke.modifiers, capsLock));
        }
    }
}

void TypingTableTest::nullKeymapTypesNothing()
{
    QVERIFY(TypingTable().isEmpty());
    QVERIFY(TypingTable(Keymap()).isEmpty());
    QVERIFY(!TypingTable(Keymap::fromNames("us")).isEmpty());
}

QTEST_MAIN(TypingTableTest)
#include "typingtabletest.moc"
