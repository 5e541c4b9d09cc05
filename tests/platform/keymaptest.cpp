// SPDX-License-Identifier: MIT
#include "platform/keymap.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class KeymapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysHaveTheCharactersOfTheLayout_data();
    void keysHaveTheCharactersOfTheLayout();
    void unknownLayoutIsNull();
    void descriptionNamesLayoutAndVariant();
    void descriptionsOfAnotherFormAreNull_data();
    void descriptionsOfAnotherFormAreNull();
    void nameIsTheOneOfTheLayout();
    void nullKeymapHasNoCharacters();
};

void KeymapTest::keysHaveTheCharactersOfTheLayout_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("shifted");
    const auto row = [](const char *layout, const char *key, const QString &plain, const QString &shifted) {
        QTest::addRow("%s %s", layout, key) << QByteArray(layout) << QByteArray(key) << plain << shifted;
    };
    row("us", "AD06", u"y"_s, u"Y"_s);
    row("us", "AE02", u"2"_s, u"@"_s);
    row("de", "AD06", u"z"_s, u"Z"_s);
    row("de", "AE02", u"2"_s, u"\""_s);
    row("de", "AC11", u"ä"_s, u"Ä"_s);
    row("de", "AE12", u"´"_s, u"`"_s); // dead keys
    row("fr", "AD01", u"a"_s, u"A"_s);
    row("fr", "AE01", u"&"_s, u"1"_s);
    row("ru", "AD01", u"й"_s, u"Й"_s);
    row("us", "SPCE", u""_s, u""_s);
    row("us", "LFSH", u""_s, u""_s);
    row("us", "ESC", u""_s, u""_s);
    row("us", "NONE", u""_s, u""_s);
}

void KeymapTest::keysHaveTheCharactersOfTheLayout()
{
    QFETCH(QByteArray, layout);
    QFETCH(QByteArray, key);
    const Keymap keymap = Keymap::fromNames(layout.constData());
    QVERIFY(!keymap.isNull());
    const Keymap::Characters characters = keymap.charactersOf(key.constData());
    QTEST(characters.plain, "plain");
    QTEST(characters.shifted, "shifted");
}

void KeymapTest::unknownLayoutIsNull()
{
    QVERIFY(Keymap::fromNames("no-such-layout").isNull());
}

void KeymapTest::descriptionNamesLayoutAndVariant()
{
    QCOMPARE(Keymap::fromDescription(u"fr"_s).charactersOf("AD01").plain, u"a"_s);
    QCOMPARE(Keymap::fromDescription(u"fr(bepo)"_s).charactersOf("AD01").plain, u"b"_s);
    QVERIFY(Keymap::fromDescription(u"no-such-layout"_s).isNull());
    QVERIFY(Keymap::fromDescription(u"fr(no-such-variant)"_s).isNull());
}

void KeymapTest::descriptionsOfAnotherFormAreNull_data()
{
    QTest::addColumn<QString>("description");
    for (const QString &description : {u""_s, u"fr("_s, u"fr(bepo"_s, u"fr(bepo))"_s, u"fr()"_s, u"us,de"_s, u" us"_s,
                                       u"us\n"_s, u"../us"_s, u"(bepo)"_s})
        QTest::newRow(qPrintable(u'"' + description + u'"')) << description;
}

void KeymapTest::descriptionsOfAnotherFormAreNull()
{
    QFETCH(QString, description);
    QVERIFY(Keymap::fromDescription(description).isNull());
}

void KeymapTest::nameIsTheOneOfTheLayout()
{
    QCOMPARE(Keymap::fromNames("de").name(), u"German"_s);
    QCOMPARE(Keymap::fromNames("us").name(), u"English (US)"_s);
    QCOMPARE(Keymap().name(), QString());
}

void KeymapTest::nullKeymapHasNoCharacters()
{
    QVERIFY(Keymap().isNull());
    QCOMPARE(Keymap().charactersOf("AD01"), Keymap::Characters());
}

QTEST_MAIN(KeymapTest)
#include "keymaptest.moc"
