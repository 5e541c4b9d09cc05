// SPDX-License-Identifier: MIT
#include "keys/keylayout.h"
#include "tests/support/testmain.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void has119SelectableKeysAndFiveFixedOnes();
    void everyCodeOutletAndActionIsUnique();
    void codeLeadsBackToItsRow();
    void knowsTheOddRows_data();
    void knowsTheOddRows();
    void hasNoRowOutsideTheLayout_data();
    void hasNoRowOutsideTheLayout();
    void onlyF1ToF14AreFunctionKeys();
    void threeFixedKeysAreDisabledAtStart();
    void codeTextIsDecimalWithoutPadding();
    void codeValueReadsALeadingNumber_data();
    void codeValueReadsALeadingNumber();
};

void KeyLayoutTest::has119SelectableKeysAndFiveFixedOnes()
{
    QCOMPARE(KeyLayout::selectableKeys().size(), 119u);
    QCOMPARE(KeyLayout::fixedKeys().size(), 5u);
    QCOMPARE(KeyLayout::selectableKeys().front().outlet, "mESC"_L1);
    QCOMPARE(KeyLayout::selectableKeys().back().outlet, "mM5"_L1);
}

void KeyLayoutTest::everyCodeOutletAndActionIsUnique()
{
    QSet<int> codes;
    QSet<QString> outlets, actions;
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        codes << row.code;
        outlets << row.outlet;
        actions << row.action;
    }
    for (const FixedKeyRow &row : KeyLayout::fixedKeys()) {
        outlets << row.outlet;
        actions << row.action;
    }
    QCOMPARE(codes.size(), 119);
    QCOMPARE(outlets.size(), 124);
    QCOMPARE(actions.size(), 124);
}

void KeyLayoutTest::codeLeadsBackToItsRow()
{
    for (const KeyRow &row : KeyLayout::selectableKeys())
        QCOMPARE(KeyLayout::rowForCode(row.code), &row);
}

void KeyLayoutTest::knowsTheOddRows_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("outlet");
    QTest::addColumn<QString>("action");
    QTest::newRow("Numlock is Num Lock and Clear") << 83 << u"mNumlock"_s << u"clickNumlock"_s;
    QTest::newRow("Clear is Keyboard Clear") << 156 << u"mClear"_s << u"clickClear"_s;
    QTest::newRow("Apostrophe is Grave Accent") << 53 << u"mApostrophe"_s << u"clickApostrophe"_s;
    QTest::newRow("SingleQuote is Apostrophe") << 52 << u"mSingleQuote"_s << u"clickSingleQuote"_s;
    QTest::newRow("ScrollLock's action is short") << 71 << u"mScrollLock"_s << u"clickScroll"_s;
    QTest::newRow("M1 is F15") << 106 << u"mM1"_s << u"clickM1"_s;
    QTest::newRow("M5 is F19") << 110 << u"mM5"_s << u"clickM5"_s;
    QTest::newRow("T1 is F20") << 111 << u"mT1"_s << u"clickT1"_s;
    QTest::newRow("T4 is F23") << 114 << u"mT4"_s << u"clickT4"_s;
    QTest::newRow("T5 is LANG3") << 146 << u"mT5"_s << u"clickT5"_s;
    QTest::newRow("T6 is LANG4") << 147 << u"mT6"_s << u"clickT6"_s;
    QTest::newRow("T7 is International6") << 140 << u"mT7"_s << u"clickT7"_s;
    QTest::newRow("A") << 4 << u"mA"_s << u"clickA"_s;
    QTest::newRow("Left Shift") << 225 << u"mLeftShift"_s << u"clickLeftShift"_s;
    QTest::newRow("keypad equal") << 103 << u"mNumPadEqual"_s << u"clickNumPadEqual"_s;
}

void KeyLayoutTest::knowsTheOddRows()
{
    QFETCH(int, code);
    QFETCH(QString, outlet);
    QFETCH(QString, action);
    const KeyRow *row = KeyLayout::rowForCode(code);
    QVERIFY(row);
    QCOMPARE(row->outlet, outlet);
    QCOMPARE(row->action, action);
}

void KeyLayoutTest::hasNoRowOutsideTheLayout_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {-1, 0, 3, 50, 100, 115, 232, 255, 256, 100000})
        QTest::addRow("%d", code) << code;
}

void KeyLayoutTest::hasNoRowOutsideTheLayout()
{
    QFETCH(int, code);
    QVERIFY(!KeyLayout::rowForCode(code));
}

void KeyLayoutTest::onlyF1ToF14AreFunctionKeys()
{
    QStringList names;
    QList<int> codes;
    for (const KeyRow &row : KeyLayout::selectableKeys())
        if (row.isFunctionKey()) {
            names << row.functionKeyName;
            codes << row.code;
        }
    QCOMPARE(names.join(u' '), u"F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12 F13 F14"_s);
    QCOMPARE(codes, (QList<int>{58, 59, 60, 61, 62, 63, 64, 65, 66, 67, 68, 69, 104, 105}));
}

void KeyLayoutTest::threeFixedKeysAreDisabledAtStart()
{
    QStringList disabled, enabled;
    for (const FixedKeyRow &row : KeyLayout::fixedKeys())
        (row.disabledAtStart ? disabled : enabled) << row.outlet;
    QCOMPARE(disabled, (QStringList{u"mEject"_s, u"mMacro"_s, u"mFN"_s}));
    QCOMPARE(enabled, (QStringList{u"mMenu"_s, u"mNumPadBlank"_s}));
}

void KeyLayoutTest::codeTextIsDecimalWithoutPadding()
{
    QCOMPARE(KeyLayout::codeText(4), u"4"_s);
    QCOMPARE(KeyLayout::codeText(225), u"225"_s);
}

void KeyLayoutTest::codeValueReadsALeadingNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("number") << u"41"_s << 41;
    QTest::newRow("nothing") << QString() << 0;
    QTest::newRow("word") << u"Esc"_s << 0;
    QTest::newRow("number and word") << u"41st"_s << 41;
    QTest::newRow("negative") << u"-5"_s << -5;
    QTest::newRow("spaces") << u"  7"_s << 7;
    QTest::newRow("too large") << u"99999999999999999999"_s << 2147483647;
    QTest::newRow("too small") << u"-99999999999999999999"_s << (-2147483647 - 1);
}

void KeyLayoutTest::codeValueReadsALeadingNumber()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    QCOMPARE(KeyLayout::codeValue(text), value);
}

QTEST_GUILESS_MAIN(KeyLayoutTest)
#include "keylayouttest.moc"
