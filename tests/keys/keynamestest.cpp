// SPDX-License-Identifier: MIT
#include "keys/keynames.h"
#include "tests/support/testmain.h"

#include "keys/keylayout.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyHasAUniqueNameThatLeadsBack();
    void everyOutletNameLeadsBack();
    void listsEveryNameOfAKey_data();
    void listsEveryNameOfAKey();
    void everyListedNameLeadsBack();
    void findsKeys_data();
    void findsKeys();
    void findsNothingElse_data();
    void findsNothingElse();
    void codesOutsideTheLayoutHaveNoName();
};

void KeyNamesTest::everyKeyHasAUniqueNameThatLeadsBack()
{
    QSet<QString> names;
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const QString name = keyName(row.code);
        QVERIFY2(!name.isEmpty(), qPrintable(QString(row.outlet)));
        names << name.toLower();
        QCOMPARE(keyCodeForName(name), std::optional<int>(row.code));
    }
    QCOMPARE(names.size(), 119);
}

void KeyNamesTest::everyOutletNameLeadsBack()
{
    for (const KeyRow &row : KeyLayout::selectableKeys())
        QCOMPARE(keyCodeForName(QString(row.outlet).sliced(1)), std::optional<int>(row.code));
}

void KeyNamesTest::listsEveryNameOfAKey_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("one name") << 4 << QStringList{u"A"_s};
    QTest::newRow("legend") << 51 << QStringList{u"Semicolon"_s, u";"_s};
    QTest::newRow("button") << 225 << QStringList{u"Left Shift"_s, u"LeftShift"_s};
    QTest::newRow("button that differs in letter case alone") << 83 << QStringList{u"Numlock"_s};
    QTest::newRow("all three") << 226 << QStringList{u"Left Option"_s, u"Left Alt"_s, u"LeftOption"_s};
    QTest::newRow("outside the layout") << 3 << QStringList();
}

void KeyNamesTest::listsEveryNameOfAKey()
{
    QFETCH(int, code);
    QTEST(keyNames(code), "names");
}

void KeyNamesTest::everyListedNameLeadsBack()
{
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const QStringList names = keyNames(row.code);
        QCOMPARE(names.value(0), keyName(row.code));
        for (const QString &name : names)
            QCOMPARE(keyCodeForName(name), std::optional<int>(row.code));
    }
}

void KeyNamesTest::findsKeys_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::newRow("lower case") << u"a"_s << 4;
    QTest::newRow("two words") << u"left shift"_s << 225;
    QTest::newRow("numlock") << u"NUMLOCK"_s << 83;
    QTest::newRow("M1") << u"m1"_s << 106;
    QTest::newRow("T7") << u"T7"_s << 140;
    QTest::newRow("numpad") << u"Numpad 7"_s << 95;
    QTest::newRow("legend") << u";"_s << 51;
    QTest::newRow("backslash") << u"\\"_s << 49;
    QTest::newRow("spaces around") << u"  F1 "_s << 58;
    QTest::newRow("decimal code") << u"225"_s << 225;
    QTest::newRow("hexadecimal code") << u"0xE1"_s << 225;
    QTest::newRow("hexadecimal, capital") << u"0X04"_s << 4;
    QTest::newRow("a digit is the key, not the code") << u"4"_s << 33;
}

void KeyNamesTest::findsKeys()
{
    QFETCH(QString, text);
    QFETCH(int, code);
    QCOMPARE(keyCodeForName(text), std::optional<int>(code));
}

void KeyNamesTest::findsNothingElse_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"", " ", "eject", "FN", "0x", "0x100", "100", "-4", "4.0", "hyper"})
        QTest::addRow("'%s'", text) << QString::fromLatin1(text);
}

void KeyNamesTest::findsNothingElse()
{
    QFETCH(QString, text);
    QCOMPARE(keyCodeForName(text), std::nullopt);
}

void KeyNamesTest::codesOutsideTheLayoutHaveNoName()
{
    for (const int code : {-1, 0, 100, 232, 1000})
        QVERIFY(keyName(code).isEmpty());
}

QTEST_GUILESS_MAIN(KeyNamesTest)
#include "keynamestest.moc"
