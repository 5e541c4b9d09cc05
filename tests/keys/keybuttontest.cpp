// SPDX-License-Identifier: MIT
#include "keys/keybutton.h"
#include "tests/support/testmain.h"

#include "keys/keycap.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const KeyShape &shapeOfA()
{
    return *KeyGeometry::shapeForOutlet("mA"_L1);
}

QImage drawn(KeycapState state, const QPalette &palette = QPalette())
{
    QImage image(88, 88, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintKeycap(painter, QRectF(0, 0, 88, 88), 88, state, palette);
    return image;
}

// The brightness of the pixels alone, for users who cannot distinguish the colours.
QImage withoutColor(const QImage &image)
{
    return image.convertToFormat(QImage::Format_Grayscale8);
}

// The number of pixels whose brightness differs visibly between `a` and `b`.
int visiblyDifferentPixels(const QImage &a, const QImage &b)
{
    constexpr int visibleStep = 25; // of 255 steps
    const QImage grayA = withoutColor(a), grayB = withoutColor(b);
    int count = 0;
    for (int y = 0; y < grayA.height(); ++y)
        for (int x = 0; x < grayA.width(); ++x)
            count += std::abs(qGray(grayA.pixel(x, y)) - qGray(grayB.pixel(x, y))) > visibleStep;
    return count;
}

} // namespace

class KeyButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsMomentaryOffAndPlain();
    void onOffButtonTogglesItsState();
    void momentaryButtonHasNoLastingState();
    void becomingMomentaryTurnsItOff();
    void highlightCanBeSwitched();
    void selectedKeyIsNotDrawnHighlighted();
    void clickAloneChangesNothing();
    void spaceAndReturnClick_data();
    void spaceAndReturnClick();
    void movesAreAnnouncedWithoutAClick();
    void charactersAreAnnouncedWithoutAClick();
    void fixedKeyTakesNoFocus();
    void statesDifferWithoutColour_data();
    void statesDifferWithoutColour();
    void commandsHaveTheirMarks_data();
    void commandsHaveTheirMarks();
};

void KeyButtonTest::startsMomentaryOffAndPlain()
{
    const KeyButton button(shapeOfA(), true);
    QCOMPARE(button.objectName(), u"mA"_s);
    QCOMPARE(button.buttonType(), KeyButton::Type::momentaryPushIn);
    QCOMPARE(static_cast<int>(button.buttonType()), 7);
    QCOMPARE(static_cast<int>(KeyButton::Type::onOff), 6);
    QCOMPARE(button.state(), 0);
    QVERIFY(!button.isHighlighted());
    QVERIFY(!button.isShownSelected());
}

void KeyButtonTest::onOffButtonTogglesItsState()
{
    KeyButton button(shapeOfA(), true);
    button.setButtonType(KeyButton::Type::onOff);
    QVERIFY(button.isShownSelected());
    button.setNextState();
    QCOMPARE(button.state(), 1);
    button.setNextState();
    QCOMPARE(button.state(), 0);
}

void KeyButtonTest::momentaryButtonHasNoLastingState()
{
    KeyButton button(shapeOfA(), true);
    button.setNextState();
    QCOMPARE(button.state(), 0);
}

void KeyButtonTest::becomingMomentaryTurnsItOff()
{
    KeyButton button(shapeOfA(), true);
    button.setButtonType(KeyButton::Type::onOff);
    button.setNextState();
    button.setButtonType(KeyButton::Type::momentaryPushIn);
    QCOMPARE(button.state(), 0);
    QVERIFY(!button.isShownSelected());
}

void KeyButtonTest::highlightCanBeSwitched()
{
    KeyButton button(shapeOfA(), true);
    button.highlight(true);
    QVERIFY(button.isHighlighted());
    button.highlight(false);
    QVERIFY(!button.isHighlighted());
}

void KeyButtonTest::selectedKeyIsNotDrawnHighlighted()
{
    KeyButton button(shapeOfA(), true);
    button.resize(88, 88);
    button.setUnit(88);
    const auto drawing = [&button] { return button.grab().toImage(); };
    const QImage plain = drawing();
    button.setButtonType(KeyButton::Type::onOff);
    const QImage selected = drawing();
    button.highlight(true);
    QCOMPARE(drawing(), selected);
    button.setButtonType(KeyButton::Type::momentaryPushIn);
    QVERIFY(drawing() != plain); // the highlight has remained
}

void KeyButtonTest::clickAloneChangesNothing()
{
    KeyButton button(shapeOfA(), true);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    button.click();
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(button.state(), 0);
    QVERIFY(!button.isShownSelected());
}

void KeyButtonTest::spaceAndReturnClick_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void KeyButtonTest::spaceAndReturnClick()
{
    QFETCH(Qt::Key, key);
    KeyButton button(shapeOfA(), true);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QTest::keyClick(&button, key);
    QCOMPARE(clicked.count(), 1);
}

void KeyButtonTest::movesAreAnnouncedWithoutAClick()
{
    KeyButton button(shapeOfA(), true);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    const QList<Qt::Key> keys{Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down, Qt::Key_Home, Qt::Key_End};
    QList<Qt::Key> moves;
    QList<bool> extensions;
    connect(&button, &KeyButton::moveRequested, &button, [&](Qt::Key key, bool isExtending) {
        moves << key;
        extensions << isExtending;
    });
    for (const Qt::Key key : keys)
        QTest::keyClick(&button, key);
    QCOMPARE(moves, keys);
    QVERIFY(!extensions.contains(true));
    QTest::keyClick(&button, Qt::Key_Left, Qt::ShiftModifier);
    QVERIFY(extensions.last());
    QCOMPARE(clicked.count(), 0);
}

void KeyButtonTest::charactersAreAnnouncedWithoutAClick()
{
    KeyButton button(shapeOfA(), true);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QStringList typed;
    connect(&button, &KeyButton::characterTyped, &button, [&](const QString &character) { typed << character; });
    QTest::keyClick(&button, Qt::Key_Q, Qt::NoModifier);
    QTest::keyClick(&button, Qt::Key_1, Qt::ShiftModifier);
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        QTest::keyClick(&button, Qt::Key_Q, modifier);
    QTest::keyClick(&button, Qt::Key_Escape);
    QCOMPARE(typed.size(), 2);
    QCOMPARE(typed.first().toLower(), u"q"_s);
    QCOMPARE(clicked.count(), 0);
}

void KeyButtonTest::fixedKeyTakesNoFocus()
{
    const KeyButton button(*KeyGeometry::shapeForOutlet("mEject"_L1), false);
    QCOMPARE(button.focusPolicy(), Qt::NoFocus);
}

void KeyButtonTest::statesDifferWithoutColour_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void KeyButtonTest::statesDifferWithoutColour()
{
    QFETCH(bool, isDark);
    QPalette palette;
    if (isDark)
        palette.setColor(QPalette::Window, QColor(0x2b, 0x2d, 0x31));
    const KeycapState plain{.look = KeyLook::letter, .legend = u"A"_s};
    QList<QImage> images{drawn(plain, palette)};
    for (const KeyMark mark : {KeyMark::singleKey, KeyMark::macro, KeyMark::profile, KeyMark::launchProgram,
                               KeyMark::disabled, KeyMark::other}) {
        KeycapState state = plain;
        state.mark = mark;
        images << drawn(state, palette);
    }
    KeycapState selected = plain;
    selected.isSelected = true;
    images << drawn(selected, palette);
    KeycapState fixed = plain;
    fixed.isSelectable = false;
    images << drawn(fixed, palette);
    KeycapState inactive = plain;
    inactive.isEnabled = false;
    images << drawn(inactive, palette);
    for (qsizetype a = 0; a < images.size(); ++a)
        for (qsizetype b = a + 1; b < images.size(); ++b)
            QVERIFY2(visiblyDifferentPixels(images[a], images[b]) > 60, qPrintable(u"%1 and %2"_s.arg(a).arg(b)));
}

void KeyButtonTest::commandsHaveTheirMarks_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<KeyMark>("mark");
    QTest::newRow("none") << 0 << KeyMark::none;
    QTest::newRow("default") << 45 << KeyMark::none;
    QTest::newRow("macro") << 10 << KeyMark::macro;
    QTest::newRow("single key") << 16 << KeyMark::singleKey;
    QTest::newRow("profile") << 17 << KeyMark::profile;
    QTest::newRow("disabled") << 20 << KeyMark::disabled;
    QTest::newRow("program") << 46 << KeyMark::launchProgram;
    QTest::newRow("unknown") << 30 << KeyMark::other;
}

void KeyButtonTest::commandsHaveTheirMarks()
{
    QFETCH(int, command);
    QFETCH(KeyMark, mark);
    QCOMPARE(keyMarkForCommand(command), mark);
}

QTEST_MAIN(KeyButtonTest)
#include "keybuttontest.moc"
