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

void KeymapTest::nullKeymapHasNoCharacters()
{
    QVERIFY(Keymap().isNull());
    QCOMPARE(Keymap().charactersOf("AD01"), Keymap::Characters());
}

QTEST_MAIN(KeymapTest)
#include "keymaptest.moc"
