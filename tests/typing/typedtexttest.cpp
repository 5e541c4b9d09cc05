// SPDX-License-Identifier: MIT
#include "typing/typedtext.h"
#include "base/keycodes.h"
#include "platform/keymap.h"
#include "tests/support/testmain.h"
#include "tests/support/textreader.h"
#include "typing/typingtable.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int pauseMs = 20;
constexpr uint shift = 225;

using Event = MacroRecord::Event;

TypingTable tableFor(const QString &layout)
{
    return TypingTable(Keymap::fromDescription(layout), "en_US.UTF-8");
}

/// The text that a computer with `keymap` receives. A key that is pressed twice, released early or left down makes it
/// wrong.
QString readBack(const QList<Event> &events, const Keymap &keymap)
{
    TextReader reader(keymap.map(), keymap.layout());
    QSet<uint> down;
    for (const Event &event : events) {
        const std::optional<quint16> code =
            KeyCodes::linuxCode({HidUsage::keyboardPage, static_cast<quint16>(event.argument)});
        if (!code || event.page != MacroRecord::keyboardPage)
            return u"<not a key>"_s;
        if (event.command == MacroRecord::keyDown) {
            if (down.contains(event.argument))
                return u"<pressed twice>"_s;
            down.insert(event.argument);
            reader.press(*code);
        } else {
            if (!down.remove(event.argument))
                return u"<released without a press>"_s;
            reader.release(*code);
        }
    }
    return down.isEmpty() && reader.isAtRest() ? QString::fromStdString(reader.text()) : u"<keys are left down>"_s;
}

/// The events in short: "+4" is a press, "-4" a release, with the pause before it in brackets unless it is 0.
QString written(const QList<Event> &events)
{
    QStringList words;
    for (const Event &event : events) {
        const QString pause = event.delayMs == 0 ? QString() : u"(%1)"_s.arg(event.delayMs);
        words += pause + (event.command == MacroRecord::keyDown ? u'+' : u'-') + QString::number(event.argument);
    }
    return words.join(u' ');
}

QString written(const QList<UntypedCharacter> &untyped)
{
    QStringList words;
    for (const UntypedCharacter &each : untyped)
        words += u"%1:%2"_s.arg(each.position).arg(uint(each.character), 0, 16);
    return words.join(u' ');
}

} // namespace

class TypedTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsBetweenKeysAlone();
    void holdsModifiersOnlyAsLongAsNeeded();
    void textArrivesAsItWas_data();
    void textArrivesAsItWas();
    void randomTextsArriveAsTheyWere_data();
    void randomTextsArriveAsTheyWere();
    void everyLineEndIsOneReturn();
    void combiningMarksBecomeComposedCharacters();
    void marksThatDoNotComposeAreTypedAlone();
    void namesWhatCannotBeTyped_data();
    void namesWhatCannotBeTyped();
    void namesEveryMarkOfAnEndlessCharacter();
    void countsTheEventsOfLongTexts();
    void insertedEventsKeepThePause();
    void showsCharactersForMessages();
};

void TypedTextTest::waitsBetweenKeysAlone()
{
    const TypingTable table = tableFor(u"us"_s);
    QCOMPARE(written(typeText(u"ab"_s, table, 35).events), u"+4 -4 (35)+5 -5"_s);
    QCOMPARE(written(typeText(u"aB"_s, table, 35).events), u"+4 -4 (35)+225 +5 -5 -225"_s);
    QCOMPARE(written(typeText(u"aa"_s, table, 0).events), u"+4 -4 +4 -4"_s);
    QCOMPARE(written(typeText(u"ê"_s, tableFor(u"fr"_s), 7).events), u"+47 -47 (7)+8 -8"_s);
    QVERIFY(typeText(QString(), table, 35).events.isEmpty());
    QCOMPARE(typeText(QString(), table, 35).eventCount, 0);
}

void TypedTextTest::holdsModifiersOnlyAsLongAsNeeded()
{
    QCOMPARE(written(typeText(u"aBCd"_s, tableFor(u"us"_s), 0).events), u"+4 -4 +225 +5 -5 +6 -6 -225 +7 -7"_s);
    // Shift stays down while AltGr comes and goes.
    QCOMPARE(written(typeText(u"A¿A@"_s, tableFor(u"de"_s), 0).events),
             u"+225 +4 -4 +230 +45 -45 -230 +4 -4 -225 +230 +20 -20 -230"_s);
}

void TypedTextTest::textArrivesAsItWas_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("text");
    QTest::newRow("us")
        << u"us"_s << u"The quick brown fox: \"Jumps\" over {the} lazy-dog's back?\n\t1234567890 ~!@#$%^&*()_+|<>\n"_s;
    QTest::newRow("de")
        << u"de"_s
        << u"Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich!\n\t„20 €“, µ² @ [x] {y} \\ | ~ ^ ` ´ ÀÉÎ ẞ"_s;
    QTest::newRow("fr")
        << u"fr"_s
        << u"Dès Noël, où un zéphyr haï me vêt de glaçons würmiens, je dîne d’exquis rôtis.\n\tCa coûte 50 € @ {~#`|^} ÊËÏÔÙ"_s
               .replace(u'’', u'\'');
    QTest::newRow("es")
        << u"es"_s
        << u"El pingüino Wenceslao hizo kilómetros bajo exhaustiva lluvia y frío; ¿añoraba? ¡Ñandú!\n\t[5 €] @ # {ç} \\ | ÁÉÍÓÚ ^`´¨"_s;
    QTest::newRow("ru")
        << u"ru"_s
        << u"Съешь же ещё этих мягких французских булок, да выпей чаю.\n\tЁЖИК № 7; \"100%\": (да) + нет = ?! / \\"_s;
    QTest::newRow("jp") << u"jp"_s
                        << u"Iroha ni hoheto, \"chirinuru\" o @ [home]: 100% \\ ^ _ | ~ `{x}`\n\t'A' & <B> = *; + ?"_s;
    QTest::newRow("fr(bepo)") << u"fr(bepo)"_s << u"Voix ambiguë d’un cœur « qui » préfère les jattes de kiwis…"_s;
    QTest::newRow("us(intl)") << u"us(intl)"_s << u"\"It's\" a café – naïve? ~^`"_s.replace(u'–', u'-');
    QTest::newRow("gr") << u"gr"_s << u"Ξεσκεπάζω την ψυχοφθόρα βδελυγμία. ΐ Ύ"_s;
    QTest::newRow("de(neo)") << u"de(neo)"_s << u"Falsches Üben … α β ∫ {x} €"_s;
}

void TypedTextTest::textArrivesAsItWas()
{
    QFETCH(QString, layout);
    QFETCH(QString, text);
    const Keymap keymap = Keymap::fromDescription(layout);
    QVERIFY(!keymap.isNull());
    const TypedText typed = typeText(text, TypingTable(keymap, "en_US.UTF-8"), pauseMs);
    QCOMPARE(written(typed.untyped), QString());
    QCOMPARE(typed.eventCount, typed.events.size());
    QCOMPARE(readBack(typed.events, keymap), text);
}

void TypedTextTest::randomTextsArriveAsTheyWere_data()
{
    QTest::addColumn<QString>("layout");
    for (const char *layout :
         {"us", "de", "fr", "es", "ru", "jp", "fr(bepo)", "us(intl)", "gr", "de(neo)", "ca(multix)"})
        QTest::newRow(layout) << QString::fromLatin1(layout);
}

void TypedTextTest::randomTextsArriveAsTheyWere()
{
    QFETCH(QString, layout);
    const Keymap keymap = Keymap::fromDescription(layout);
    QVERIFY(!keymap.isNull());
    const TypingTable table(keymap, "en_US.UTF-8");
    QStringList texts = table.texts();
    texts.sort();
    QVERIFY(texts.size() > 60);
    // Every one once, in a random order, then random ones.
    QRandomGenerator random(static_cast<quint32>(texts.size()));
    QStringList order = texts;
    std::shuffle(order.begin(), order.end(), random);
    for (int count = 0; count < 2'000; ++count)
        order += texts.at(random.bounded(int(texts.size())));
    for (qsizetype begin = 0; begin < order.size(); begin += 50) {
        const QString text = order.mid(begin, 50).join(QString());
        const TypedText typed = typeText(text, table, pauseMs);
        QCOMPARE(written(typed.untyped), QString());
        QCOMPARE(readBack(typed.events, keymap).normalized(QString::NormalizationForm_C),
                 text.normalized(QString::NormalizationForm_C));
    }
}

void TypedTextTest::everyLineEndIsOneReturn()
{
    const TypingTable table = tableFor(u"us"_s);
    const QString twoLines = u"+4 -4 +40 -40 +4 -4"_s;
    QCOMPARE(written(typeText(u"a\na"_s, table, 0).events), twoLines);
    QCOMPARE(written(typeText(u"a\r\na"_s, table, 0).events), twoLines);
    QCOMPARE(written(typeText(u"a\ra"_s, table, 0).events), twoLines);
    QCOMPARE(written(typeText(u"\n\r"_s, table, 0).events), u"+40 -40 +40 -40"_s);
}

void TypedTextTest::combiningMarksBecomeComposedCharacters()
{
    const Keymap keymap = Keymap::fromNames("de");
    const TypedText typed = typeText(u"e\u0301 A\u0308 u\u0308"_s, TypingTable(keymap, "en_US.UTF-8"), pauseMs);
    QCOMPARE(readBack(typed.events, keymap), u"é Ä ü"_s);
}

void TypedTextTest::marksThatDoNotComposeAreTypedAlone()
{
    // Arabic vowel signs are keys of their own; no character has both.
    const Keymap keymap = Keymap::fromNames("ara");
    QVERIFY(!keymap.isNull());
    const QString text = u"\u0628\u064E"_s;
    QCOMPARE(readBack(typeText(text, TypingTable(keymap, "en_US.UTF-8"), pauseMs).events, keymap), text);
    // A letter that the layout has only in parts.
    const Keymap vietnamese = Keymap::fromNames("vn");
    QVERIFY(!vietnamese.isNull());
    const TypedText parts = typeText(u"ế"_s, TypingTable(vietnamese, "en_US.UTF-8"), pauseMs);
    QCOMPARE(readBack(parts.events, vietnamese).normalized(QString::NormalizationForm_C), u"ế"_s);
}

void TypedTextTest::namesWhatCannotBeTyped_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("untyped"); // position:code
    const QString face = QString::fromUtf8("\xF0\x9F\x98\x80");
    QTest::newRow("letters") << u"us"_s << u"naïve café"_s << u"3:ef 10:e9"_s;
    QTest::newRow("the same twice") << u"us"_s << u"éé"_s << u"1:e9 2:e9"_s;
    QTest::newRow("beyond the basic plane") << u"us"_s << QString(u"a"_s + face + u"bé"_s) << u"2:1f600 4:e9"_s;
    QTest::newRow("half a surrogate pair") << u"us"_s << QString(u"ab"_s + QChar(0xD83D)) << u"3:fffd"_s;
    QTest::newRow("a mark alone") << u"us"_s << u"ae\u0301"_s << u"3:301"_s;
    QTest::newRow("control characters") << u"us"_s << u"a\x1b\x7f\b\u0085"_s << u"2:1b 3:7f 4:8 5:85"_s;
    QTest::newRow("zero") << u"us"_s << QString(u"a"_s + QChar(0)) << u"2:0"_s;
    QTest::newRow("after a line end of two characters") << u"us"_s << u"a\r\né"_s << u"4:e9"_s;
    QTest::newRow("a line separator") << u"us"_s << u"\u2028"_s << u"1:2028"_s;
    QTest::newRow("Latin letters on a Russian layout") << u"ru"_s << u"да no"_s << u"4:6e 5:6f"_s;
    QTest::newRow("kana without an input method") << u"jp"_s << u"はa"_s << u"1:306f"_s;
}

void TypedTextTest::namesWhatCannotBeTyped()
{
    QFETCH(QString, layout);
    QFETCH(QString, text);
    const TypedText typed = typeText(text, tableFor(layout), pauseMs);
    QTEST(written(typed.untyped), "untyped");
    QVERIFY(typed.events.isEmpty());
}

void TypedTextTest::namesEveryMarkOfAnEndlessCharacter()
{
    constexpr qsizetype marks = 50'000; // a search for each part of it would not end
    const TypedText typed = typeText(u'a' + QString(marks, QChar(0x301)), tableFor(u"us"_s), pauseMs);
    QCOMPARE(typed.untyped.size(), marks);
    QCOMPARE(typed.untyped.last().position, marks + 1);
}

void TypedTextTest::countsTheEventsOfLongTexts()
{
    const TypingTable table = tableFor(u"us"_s);
    const QString longest(MacroRecord::maximumEvents / 2, u'a');
    QCOMPARE(typeText(longest, table, pauseMs).events.size(), MacroRecord::maximumEvents);
    const TypedText tooLong = typeText(longest + u'B', table, pauseMs);
    QCOMPARE(tooLong.eventCount, MacroRecord::maximumEvents + 4);
    QVERIFY(tooLong.events.isEmpty());
    QVERIFY(tooLong.untyped.isEmpty());
}

void TypedTextTest::insertedEventsKeepThePause()
{
    const QList<Event> typed = typeText(u"Ab"_s, tableFor(u"us"_s), 5).events;
    const QVariantList macro{MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 4}),
                             MacroRecord::eventRecord({.delayMs = 100, .argument = 4})};
    const auto inserted = [&](const QVariantList &events, qsizetype index) {
        QList<Event> all;
        for (const QVariant &event : insertingTyped(events, index, typed, 30))
            all += MacroRecord::eventFields(event.toMap());
        return written(all);
    };
    QCOMPARE(inserted({}, 0), u"+225 +4 -4 -225 (5)+5 -5"_s);
    QCOMPARE(inserted(macro, 2), u"+4 (100)-4 (30)+225 +4 -4 -225 (5)+5 -5"_s);
    QCOMPARE(inserted(macro, 1), u"+4 (30)+225 +4 -4 -225 (5)+5 -5 (100)-4"_s);
    QCOMPARE(inserted(macro, 0), u"+225 +4 -4 -225 (5)+5 -5 (30)+4 (100)-4"_s);
    QCOMPARE(inserted({macro.at(1)}, 0), u"+225 +4 -4 -225 (5)+5 -5 (100)-4"_s); // its own delay stays
    QCOMPARE(insertingTyped(macro, 1, {}, 30), macro);
}

void TypedTextTest::showsCharactersForMessages()
{
    QCOMPARE(shownCharacter(U'€'), u"€ (U+20AC)"_s);
    QCOMPARE(shownCharacter(0x1F600), QString::fromUtf8("\xF0\x9F\x98\x80 (U+1F600)"));
    QCOMPARE(shownCharacter(0x301), u"\u25CC\u0301 (U+0301)"_s);
    QCOMPARE(shownCharacter(0x1B), u"U+001B"_s);
    QCOMPARE(shownCharacter(0x202E), u"U+202E"_s); // turns the direction of text
    QCOMPARE(shownCharacter(0xA0), u"U+00A0"_s);
    QCOMPARE(shownCharacter(0xE000), u"U+E000"_s);
}

QTEST_MAIN(TypedTextTest)
#include "typedtexttest.moc"
