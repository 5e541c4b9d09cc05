// SPDX-License-Identifier: MIT
#include "keys/keyboardpicture.h"
#include "tests/support/testmain.h"

#include "keys/keybutton.h"
#include "keys/keylayout.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyboardPictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAShapeForEveryKeyOfTheTable();
    void noTwoKeysOverlap();
    void everyKeyLiesInsideTheBounds();
    void mKeysFormAColumnAtTheLeft();
    void tKeysFormARowUnderTheSpaceBar();
    void modifiersHaveTheirOrder();
    void functionKeysFormARow();
    void scalesWithoutOverlap_data();
    void scalesWithoutOverlap();
    void keepsTheRatioAndCentres();
    void arrowsSelectTheNextKeyInTheirDirection_data();
    void arrowsSelectTheNextKeyInTheirDirection();
    void arrowsStopAtTheEdge();
    void everyKeyIsReachableByArrows();
    void arrowKeyClicksTheNeighbour();
    void isOneStopInTheTabOrder();
};

namespace {

QRectF placeOf(const char *outlet)
{
    return KeyGeometry::shapeForOutlet(QLatin1StringView(outlet))->place;
}

constexpr qreal tolerance = 0.001;

} // namespace

void KeyboardPictureTest::hasAShapeForEveryKeyOfTheTable()
{
    QCOMPARE(KeyGeometry::shapes().size(), 124u);
    const KeyboardPicture picture;
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        QVERIFY2(picture.button(row.outlet), qPrintable(QString(row.outlet)));
        QVERIFY(picture.button(row.outlet)->isSelectable());
    }
    for (const FixedKeyRow &row : KeyLayout::fixedKeys()) {
        QVERIFY2(picture.button(row.outlet), qPrintable(QString(row.outlet)));
        QVERIFY(!picture.button(row.outlet)->isSelectable());
    }
    QCOMPARE(picture.buttons().size(), 124);
}

void KeyboardPictureTest::noTwoKeysOverlap()
{
    const auto shapes = KeyGeometry::shapes();
    for (std::size_t a = 0; a < shapes.size(); ++a)
        for (std::size_t b = a + 1; b < shapes.size(); ++b) {
            const QRectF common = shapes[a].place.intersected(shapes[b].place);
            QVERIFY2(common.width() < tolerance || common.height() < tolerance,
                     qPrintable(shapes[a].outlet + u" and "_s + shapes[b].outlet));
        }
}

void KeyboardPictureTest::everyKeyLiesInsideTheBounds()
{
    const QRectF bounds = QRectF(QPointF(), KeyGeometry::size).adjusted(-tolerance, -tolerance, tolerance, tolerance);
    for (const KeyShape &shape : KeyGeometry::shapes()) {
        QVERIFY2(bounds.contains(shape.place), qPrintable(QString(shape.outlet)));
        QVERIFY(shape.place.width() > 0.9 && shape.place.height() > 0.7);
    }
}

void KeyboardPictureTest::mKeysFormAColumnAtTheLeft()
{
    for (const char *outlet : {"mM1", "mM2", "mM3", "mM4", "mM5"})
        QCOMPARE(placeOf(outlet).left(), 0.0);
    QVERIFY(placeOf("mM1").top() < placeOf("mM2").top());
    QVERIFY(placeOf("mM4").top() < placeOf("mM5").top());
    QVERIFY(placeOf("mM1").right() < placeOf("mApostrophe").left());
}

void KeyboardPictureTest::tKeysFormARowUnderTheSpaceBar()
{
    qreal right = 0;
    for (const char *outlet : {"mT1", "mT2", "mT3", "mT4", "mT5", "mT6", "mT7"}) {
        QCOMPARE(placeOf(outlet).top(), placeOf("mT1").top());
        QVERIFY(placeOf(outlet).left() > right - tolerance);
        right = placeOf(outlet).right();
    }
    QVERIFY(placeOf("mT1").top() >= placeOf("mSpace").bottom());
    const qreal middle = (placeOf("mT1").left() + placeOf("mT7").right()) / 2;
    QVERIFY(std::abs(middle - placeOf("mSpace").center().x()) < tolerance);
}

void KeyboardPictureTest::modifiersHaveTheirOrder()
{
    qreal left = -1;
    for (const char *outlet :
         {"mLeftControl", "mLeftOption", "mLeftCommand", "mSpace", "mRightCommand", "mRightOption", "mRightControl"}) {
        QVERIFY(placeOf(outlet).left() > left);
        QCOMPARE(placeOf(outlet).top(), placeOf("mSpace").top());
        left = placeOf(outlet).left();
    }
}

void KeyboardPictureTest::functionKeysFormARow()
{
    qreal left = placeOf("mESC").left();
    for (int number = 1; number <= 14; ++number) {
        const QRectF place = placeOf(qPrintable(u"mF%1"_s.arg(number)));
        QVERIFY(place.left() > left);
        QCOMPARE(place.top(), 0.0);
        left = place.left();
    }
}

void KeyboardPictureTest::scalesWithoutOverlap_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("smallest") << KeyboardPicture().minimumSizeHint();
    QTest::newRow("1100 px window") << QSize(1060, 350);
    QTest::newRow("odd") << QSize(1237, 401);
    QTest::newRow("4K") << QSize(3800, 1260);
}

void KeyboardPictureTest::scalesWithoutOverlap()
{
    QFETCH(QSize, size);
    KeyboardPicture picture;
    picture.resize(size);
    picture.show();
    const QList<KeyButton *> &buttons = picture.buttons();
    for (qsizetype a = 0; a < buttons.size(); ++a) {
        QVERIFY(picture.rect().contains(buttons[a]->geometry()));
        for (qsizetype b = a + 1; b < buttons.size(); ++b)
            QVERIFY2(!buttons[a]->geometry().intersects(buttons[b]->geometry()),
                     qPrintable(buttons[a]->objectName() + u" and "_s + buttons[b]->objectName()));
    }
    QVERIFY(picture.button("mA"_L1)->width() >= 28);
}

void KeyboardPictureTest::keepsTheRatioAndCentres()
{
    KeyboardPicture picture;
    picture.resize(1200, 1200);
    picture.show();
    QRect all;
    for (const KeyButton *button : picture.buttons())
        all |= button->geometry();
    const qreal ratio = KeyGeometry::size.width() / KeyGeometry::size.height();
    QVERIFY(std::abs(all.width() / qreal(all.height()) - ratio) < 0.02);
    QVERIFY(std::abs(all.center().x() - 600) <= 2);
    QVERIFY(std::abs(all.center().y() - 600) <= 2);
    QVERIFY(std::abs(picture.heightForWidth(1200) - 1200 / ratio) < 30);
}

void KeyboardPictureTest::arrowsSelectTheNextKeyInTheirDirection_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<Qt::Key>("arrow");
    QTest::addColumn<QString>("to");
    const auto row = [](const char *from, Qt::Key arrow, const char *to) {
        QTest::addRow("%s to %s", from, to) << QString::fromLatin1(from) << arrow << QString::fromLatin1(to);
    };
    row("mA", Qt::Key_Right, "mS");
    row("mS", Qt::Key_Left, "mA");
    row("mA", Qt::Key_Left, "mCapsLock");
    row("mCapsLock", Qt::Key_Left, "mM3");
    row("mSpace", Qt::Key_Left, "mLeftCommand");
    row("mRightOption", Qt::Key_Right, "mRightControl"); // over FN and Menu, which cannot be selected
    row("mF4", Qt::Key_Right, "mF5");
    row("mESC", Qt::Key_Down, "mApostrophe");
    row("mApostrophe", Qt::Key_Up, "mESC");
    row("mArrowDown", Qt::Key_Up, "mArrowUp");
    row("mNumPadSix", Qt::Key_Right, "mPlus");
    row("mNumPadThree", Qt::Key_Right, "mNumPadEnter");
    row("mSpace", Qt::Key_Down, "mT4");
    row("mT4", Qt::Key_Up, "mSpace");
    row("mPageDown", Qt::Key_Right, "mNumPadSeven");
}

void KeyboardPictureTest::arrowsSelectTheNextKeyInTheirDirection()
{
    QFETCH(QString, from);
    QFETCH(Qt::Key, arrow);
    QFETCH(QString, to);
    const KeyboardPicture picture;
    const KeyButton *start = picture.findChild<KeyButton *>(from);
    QVERIFY(start);
    const KeyButton *next = picture.neighbour(start, arrow);
    QVERIFY(next);
    QCOMPARE(next->objectName(), to);
}

void KeyboardPictureTest::arrowsStopAtTheEdge()
{
    const KeyboardPicture picture;
    QVERIFY(!picture.neighbour(picture.button("mM3"_L1), Qt::Key_Left));
    QVERIFY(!picture.neighbour(picture.button("mF5"_L1), Qt::Key_Up));
    QVERIFY(!picture.neighbour(picture.button("mNumPadEnter"_L1), Qt::Key_Right));
    QVERIFY(!picture.neighbour(picture.button("mT3"_L1), Qt::Key_Down));
}

void KeyboardPictureTest::everyKeyIsReachableByArrows()
{
    const KeyboardPicture picture;
    QSet<const KeyButton *> reached{picture.button("mESC"_L1)};
    QList<const KeyButton *> open = reached.values();
    while (!open.isEmpty()) {
        const KeyButton *from = open.takeFirst();
        for (const Qt::Key arrow : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
            const KeyButton *next = picture.neighbour(from, arrow);
            if (next && !reached.contains(next)) {
                QVERIFY(next->isSelectable());
                reached << next;
                open << next;
            }
        }
    }
    QCOMPARE(reached.size(), 119);
}

void KeyboardPictureTest::arrowKeyClicksTheNeighbour()
{
    KeyboardPicture picture;
    QSignalSpy clicked(picture.button("mS"_L1), &QAbstractButton::clicked);
    QTest::keyClick(picture.button("mA"_L1), Qt::Key_Right);
    QCOMPARE(clicked.count(), 1);
}

void KeyboardPictureTest::isOneStopInTheTabOrder()
{
    KeyboardPicture picture;
    const auto stops = [&] {
        QStringList names;
        for (const KeyButton *button : picture.buttons())
            if (button->focusPolicy() & Qt::TabFocus)
                names << button->objectName();
        return names;
    };
    QCOMPARE(stops().size(), 1);
    picture.setTabStop(picture.button("mA"_L1));
    QCOMPARE(stops(), QStringList{u"mA"_s});
}

QTEST_MAIN(KeyboardPictureTest)
#include "keyboardpicturetest.moc"
