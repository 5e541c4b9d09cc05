// SPDX-License-Identifier: MIT
#include "platform/contrast.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <cmath>

class ContrastTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ratioIsThatOfWcag_data();
    void ratioIsThatOfWcag();
    void readableColourStays();
    void faintColourIsChangedUntilItIsReadable_data();
    void faintColourIsChangedUntilItIsReadable();
    void unreachableContrastGivesTheBetterExtreme();
};

void ContrastTest::ratioIsThatOfWcag_data()
{
    QTest::addColumn<QColor>("one");
    QTest::addColumn<QColor>("other");
    QTest::addColumn<double>("ratio");
    QTest::newRow("equal") << QColor(0x336699) << QColor(0x336699) << 1.0;
    QTest::newRow("black and white") << QColor(Qt::black) << QColor(Qt::white) << 21.0;
    QTest::newRow("the other way round") << QColor(Qt::white) << QColor(Qt::black) << 21.0;
    QTest::newRow("grey 767676 on white") << QColor(0x767676) << QColor(Qt::white) << 4.54;
    QTest::newRow("pure red on white") << QColor(Qt::red) << QColor(Qt::white) << 4.0;
}

void ContrastTest::ratioIsThatOfWcag()
{
    QFETCH(QColor, one);
    QFETCH(QColor, other);
    QFETCH(double, ratio);
    QVERIFY(std::abs(Contrast::ratio(one, other) - ratio) < 0.01);
}

void ContrastTest::readableColourStays()
{
    QCOMPARE(Contrast::readable(QColor(0x23272e), {Qt::white, QColor(0xf1f2f5)}, 4.5), QColor(0x23272e));
}

void ContrastTest::faintColourIsChangedUntilItIsReadable_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("one");
    QTest::addColumn<QColor>("other");
    QTest::newRow("light on white") << QColor(0xcccccc) << QColor(Qt::white) << QColor(0xeeeeee);
    QTest::newRow("dark on black") << QColor(0x222222) << QColor(Qt::black) << QColor(0x202020);
    QTest::newRow("yellow on white") << QColor(Qt::yellow) << QColor(Qt::white) << QColor(Qt::white);
    QTest::newRow("white on a middle grey") << QColor(Qt::white) << QColor(0x777777) << QColor(0x888888);
}

void ContrastTest::faintColourIsChangedUntilItIsReadable()
{
    QFETCH(QColor, color);
    QFETCH(QColor, one);
    QFETCH(QColor, other);
    QVERIFY(Contrast::ratio(color, one) < 4.5);
    const QColor changed = Contrast::readable(color, {one, other}, 4.5);
    QVERIFY2(Contrast::ratio(changed, one) >= 4.5, qPrintable(changed.name()));
    QVERIFY2(Contrast::ratio(changed, other) >= 4.5, qPrintable(changed.name()));
}

void ContrastTest::unreachableContrastGivesTheBetterExtreme()
{
    QCOMPARE(Contrast::readable(Qt::red, {Qt::white, QColor(0x404040)}, 4.5), QColor(Qt::black));
    QCOMPARE(Contrast::readable(Qt::red, {Qt::black, QColor(0xc0c0c0)}, 4.5), QColor(Qt::white));
}

QTEST_MAIN(ContrastTest)
#include "contrasttest.moc"
