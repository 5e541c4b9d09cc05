// SPDX-License-Identifier: MIT
#include "macros/numberonlytextfield.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class NumberOnlyTextFieldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesSixDigits_data();
    void takesSixDigits();
};

void NumberOnlyTextFieldTest::takesSixDigits_data()
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

void NumberOnlyTextFieldTest::takesSixDigits()
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

QTEST_MAIN(NumberOnlyTextFieldTest)
#include "numberonlytextfieldtest.moc"
