// SPDX-License-Identifier: MIT
#include "macros/numberonlytextfield.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class NumberOnlyTextFieldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acceptsSixDigits_data();
    void acceptsSixDigits();
    void checksEachEdit_data();
    void checksEachEdit();
    void fractionIsNotReadAsAWholeNumber_data();
    void fractionIsNotReadAsAWholeNumber();
    void refusedSeparatorAffectsOnlyTheTextTypedOn_data();
    void refusedSeparatorAffectsOnlyTheTextTypedOn();
};

void NumberOnlyTextFieldTest::acceptsSixDigits_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("refusals");
    QTest::newRow("digit") << u"12"_s << 2 << int(Qt::Key_3) << u"123"_s << 0;
    QTest::newRow("seventh digit") << u"123456"_s << 6 << int(Qt::Key_7) << u"123456"_s << 1;
    QTest::newRow("letter") << u"12"_s << 2 << int(Qt::Key_A) << u"12"_s << 1;
    QTest::newRow("minus") << u"12"_s << 0 << int(Qt::Key_Minus) << u"12"_s << 1;
    QTest::newRow("deletion") << u"123456"_s << 6 << int(Qt::Key_Backspace) << u"12345"_s << 0;
}

void NumberOnlyTextFieldTest::acceptsSixDigits()
{
    QFETCH(QString, before);
    QFETCH(int, cursor);
    QFETCH(int, key);
    QFETCH(QString, after);
    QFETCH(int, refusals);
    NumberOnlyTextField field;
    for (const QChar digit : before)
        QTest::keyClick(&field, digit.toLatin1());
    QCOMPARE(field.text(), before);
    field.setCursorPosition(cursor);
    const QSignalSpy refused(&field, &NumberOnlyTextField::editRefused);
    QTest::keyClick(&field, Qt::Key(key));
    QCOMPARE(field.text(), after);
    QCOMPARE(refused.size(), refusals);
    QCOMPARE(field.integerValue(), after.toInt());
}

void NumberOnlyTextFieldTest::checksEachEdit_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("first digit") << QString() << 0 << 0 << u"1"_s << true;
    QTest::newRow("sixth digit") << u"12345"_s << 5 << 0 << u"6"_s << true;
    QTest::newRow("seventh digit") << u"123456"_s << 6 << 0 << u"7"_s << false;
    QTest::newRow("seventh digit, before the others") << u"123456"_s << 0 << 0 << u"7"_s << false;
    QTest::newRow("deletion") << u"123456"_s << 5 << 1 << QString() << true;
    QTest::newRow("letter") << u"12"_s << 2 << 0 << u"a"_s << false;
    QTest::newRow("number pasted") << u"12"_s << 1 << 0 << u"345"_s << true;
    QTest::newRow("too much pasted") << u"12"_s << 1 << 0 << u"34567"_s << false;
    QTest::newRow("replaced by a number as long") << u"123456"_s << 0 << 6 << u"654321"_s << true;
    QTest::newRow("words pasted") << u"12"_s << 0 << 2 << u"1 or 2"_s << false;
    QTest::newRow("infinity pasted") << QString() << 0 << 0 << u"inf"_s << false;
    QTest::newRow("no number pasted") << QString() << 0 << 0 << u"nan"_s << false;
    QTest::newRow("power of ten pasted") << QString() << 0 << 0 << u"1e5"_s << false;
    QTest::newRow("grouped digits pasted") << QString() << 0 << 0 << u"1,000"_s << false;
    QTest::newRow("fraction pasted") << QString() << 0 << 0 << u"1.5"_s << true;
    QTest::newRow("point alone") << u"1"_s << 1 << 0 << u"."_s << false;
}

void NumberOnlyTextFieldTest::checksEachEdit()
{
    QFETCH(QString, before);
    QFETCH(int, position);
    QFETCH(int, length);
    QFETCH(QString, replacement);
    NumberOnlyTextField field;
    field.setText(before);
    QTEST(field.textViewShouldChangeTextInRangeReplacementString(position, length, replacement), "isAccepted");
}

void NumberOnlyTextFieldTest::fractionIsNotReadAsAWholeNumber_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("delay");
    QTest::newRow("comma") << u"12,5"_s << 12;
    QTest::newRow("point") << u"12.5"_s << 12;
    QTest::newRow("several digits") << u"1.250"_s << 1;
    QTest::newRow("comma first") << u",5"_s << 0;
    QTest::newRow("letter is a slip") << u"12x5"_s << 125;
}

void NumberOnlyTextFieldTest::fractionIsNotReadAsAWholeNumber()
{
    QFETCH(QString, typed);
    NumberOnlyTextField field;
    QTest::keyClicks(&field, typed);
    QTEST(field.integerValue(), "delay");
}

void NumberOnlyTextFieldTest::refusedSeparatorAffectsOnlyTheTextTypedOn_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("after");
    QTest::newRow("deletion") << u"12,5"_s << int(Qt::Key_Backspace) << u"17"_s;
    QTest::newRow("deletion of nothing") << u",5"_s << int(Qt::Key_Backspace) << u"7"_s;
    QTest::newRow("cursor moved") << u"12,5"_s << int(Qt::Key_Left) << u"172"_s;
    QTest::newRow("Shift pressed") << u"12,5"_s << int(Qt::Key_Shift) << u"12"_s;
}

void NumberOnlyTextFieldTest::refusedSeparatorAffectsOnlyTheTextTypedOn()
{
    QFETCH(QString, before);
    QFETCH(int, key);
    NumberOnlyTextField field;
    QTest::keyClicks(&field, before);
    QTest::keyClick(&field, Qt::Key(key));
    QTest::keyClick(&field, Qt::Key_7);
    QTEST(field.text(), "after");
}

QTEST_MAIN(NumberOnlyTextFieldTest)
#include "numberonlytextfieldtest.moc"
