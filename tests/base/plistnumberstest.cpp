// SPDX-License-Identifier: MIT
#include "base/plistnumbers.h"
#include "tests/support/testmain.h"

#include <QTest>
#include <QVariantMap>

#include <limits>

using namespace Qt::StringLiterals;

class PlistNumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsValuesOfEveryKind_data();
    void readsValuesOfEveryKind();
};

void PlistNumbersTest::readsValuesOfEveryKind_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("expected");
    constexpr int highest = std::numeric_limits<int>::max();
    constexpr int lowest = std::numeric_limits<int>::min();
    QTest::newRow("int") << QVariant(-7) << -7;
    QTest::newRow("long") << QVariant(qlonglong(12)) << 12;
    QTest::newRow("unsigned 32 bits") << QVariant(qlonglong(0xffff'fffe)) << -2;
    QTest::newRow("low 32 bits") << QVariant(qlonglong(0x1'0000'0005)) << 5;
    QTest::newRow("unsigned long") << QVariant(std::numeric_limits<qulonglong>::max()) << -1;
    QTest::newRow("true") << QVariant(true) << 1;
    QTest::newRow("false") << QVariant(false) << 0;
    QTest::newRow("real is cut") << QVariant(10.9) << 10;
    QTest::newRow("negative real is cut") << QVariant(-2.9) << -2;
    QTest::newRow("great real") << QVariant(4294967294.0) << -2;
    QTest::newRow("too great a real") << QVariant(1e300) << 0;
    QTest::newRow("too small a real") << QVariant(-1e300) << 0;
    QTest::newRow("64 bits and one") << QVariant(0x1p63) << 0;
    QTest::newRow("infinity") << QVariant(std::numeric_limits<double>::infinity()) << 0;
    QTest::newRow("not a number") << QVariant(std::numeric_limits<double>::quiet_NaN()) << 0;
    QTest::newRow("decimal text") << QVariant(u"16"_s) << 16;
    QTest::newRow("text with a sign") << QVariant(u" -16 "_s) << -16;
    QTest::newRow("text after a number") << QVariant(u"+3rd"_s) << 3;
    QTest::newRow("text above") << QVariant(u"99999999999999999999"_s) << highest;
    QTest::newRow("text below") << QVariant(u"-99999999999999999999"_s) << lowest;
    QTest::newRow("lone sign") << QVariant(u"-"_s) << 0;
    QTest::newRow("path") << QVariant(u"/Applications/A.app"_s) << 0;
    QTest::newRow("nothing") << QVariant() << 0;
    QTest::newRow("data") << QVariant(QByteArray("10")) << 0;
    QTest::newRow("array") << QVariant(QVariantList{10}) << 0;
    QTest::newRow("dictionary") << QVariant(QVariantMap{{u"command"_s, 10}}) << 0;
}

void PlistNumbersTest::readsValuesOfEveryKind()
{
    QFETCH(QVariant, value);
    QFETCH(int, expected);
    QCOMPARE(PlistNumbers::integerValue(value), expected);
}

QTEST_GUILESS_MAIN(PlistNumbersTest)
#include "plistnumberstest.moc"
