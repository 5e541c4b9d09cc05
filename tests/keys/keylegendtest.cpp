// SPDX-License-Identifier: MIT
// The fonts of the legends, with every font family of the machine.
#include "keys/keylegend.h"
#include "tests/support/testmain.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QTest>

#include <cstdlib>

class KeyLegendTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void weightIsTheNearestOfTheFamily_data();
    void weightIsTheNearestOfTheFamily();
};

void KeyLegendTest::weightIsTheNearestOfTheFamily_data()
{
    QTest::addColumn<QString>("family");
    for (const QString &family : QFontDatabase::families()) {
        QFont font;
        font.setFamily(family);
        if (QFontInfo(font).family() == family) // others have a foundry in their names
            QTest::newRow(qUtf8Printable(family)) << family;
    }
}

void KeyLegendTest::weightIsTheNearestOfTheFamily()
{
    QFETCH(QString, family);
    const QFont before = QGuiApplication::font();
    QFont font = before;
    font.setFamily(family);
    QGuiApplication::setFont(font);
    for (const QFont::Weight wanted : {QFont::Light, QFont::Medium, QFont::DemiBold, QFont::Black}) {
        const QFont legend = keyLegendFont(12, wanted);
        QCOMPARE(legend.family(), family);
        QCOMPARE(legend.pixelSize(), 12);
        bool isOfTheFamily = false;
        for (const QString &style : QFontDatabase::styles(family)) {
            const int weight = QFontDatabase::weight(family, style);
            isOfTheFamily = isOfTheFamily || weight == legend.weight();
            QVERIFY(std::abs(weight - wanted) >= std::abs(legend.weight() - wanted));
        }
        QVERIFY(isOfTheFamily);
    }
    QGuiApplication::setFont(before);
}

QTEST_MAIN(KeyLegendTest)
#include "keylegendtest.moc"
