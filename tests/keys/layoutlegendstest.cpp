// SPDX-License-Identifier: MIT
#include "keys/layoutlegends.h"
#include "tests/support/testmain.h"

#include "keys/keygeometry.h"
#include "platform/keymap.h"

#include <QTest>

using namespace Qt::StringLiterals;

class LayoutLegendsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysShowTheCharactersOfTheLayout_data();
    void keysShowTheCharactersOfTheLayout();
    void americanLayoutHasThePrintedLegends();
    void withoutALayoutTheyAreThePrintedOnes();
};

namespace {

LayoutLegends::Legend legendOf(const KeyShape &shape, const Keymap &keymap)
{
    return LayoutLegends::legendOf(shape, keymap);
}

LayoutLegends::Legend printedOn(const KeyShape &shape)
{
    return {shape.legend, shape.upperLegend};
}

} // namespace

void LayoutLegendsTest::keysShowTheCharactersOfTheLayout_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<QByteArray>("outlet");
    QTest::addColumn<QString>("lower");
    QTest::addColumn<QString>("upper");
    const auto row = [](const char *layout, const char *outlet, const QString &lower, const QString &upper) {
        QTest::addRow("%s %s", layout, outlet) << QByteArray(layout) << QByteArray(outlet) << lower << upper;
    };
    row("de", "mY", u"Z"_s, u""_s);
    row("de", "mZ", u"Y"_s, u""_s);
    row("de", "mSemiColon", u"Ö"_s, u""_s);
    row("de", "mDash", u"ß"_s, u"?"_s);
    row("de", "mSlash", u"-"_s, u"_"_s);
    row("fr", "mQ", u"A"_s, u""_s);
    row("fr", "mOne", u"&"_s, u"1"_s);
    row("fr", "mSemiColon", u"M"_s, u""_s);
    row("ru", "mQ", u"Й"_s, u""_s);
    row("de", "mNumPadSeven", u"7"_s, u""_s);
    row("de", "mF1", u"F1"_s, u""_s);
    row("de", "mM1", u"M1"_s, u""_s);
    row("de", "mEnter", u"enter"_s, u""_s);
}

void LayoutLegendsTest::keysShowTheCharactersOfTheLayout()
{
    QFETCH(QByteArray, layout);
    QFETCH(QByteArray, outlet);
    QFETCH(QString, lower);
    QFETCH(QString, upper);
    const KeyShape *shape = KeyGeometry::shapeForOutlet(QLatin1StringView(outlet));
    QVERIFY(shape);
    const LayoutLegends::Legend legend = legendOf(*shape, Keymap::fromNames(layout.constData()));
    QCOMPARE(legend.lower, lower);
    QCOMPARE(legend.upper, upper);
}

void LayoutLegendsTest::americanLayoutHasThePrintedLegends()
{
    const Keymap american = Keymap::fromNames("us");
    for (const KeyShape &shape : KeyGeometry::shapes())
        QVERIFY2(legendOf(shape, american) == printedOn(shape), qPrintable(QString(shape.outlet)));
}

void LayoutLegendsTest::withoutALayoutTheyAreThePrintedOnes()
{
    for (const KeyShape &shape : KeyGeometry::shapes())
        QVERIFY2(legendOf(shape, Keymap()) == printedOn(shape), qPrintable(QString(shape.outlet)));
}

QTEST_MAIN(LayoutLegendsTest)
#include "layoutlegendstest.moc"
