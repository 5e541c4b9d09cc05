// SPDX-License-Identifier: MIT
// The backlight in the keyboard picture.
#include "keys/picturelight.h"
#include "keys/keyboardpicture.h"
#include "keys/keybutton.h"
#include "tests/support/testmain.h"

#include <QPainter>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTest>

using Backlight::Settings;

namespace {

Settings lit(int effect = Backlight::fixedColorEffect, int brightness = Backlight::maximumBrightness)
{
    return {.isOn = true, .color = {255, 0, 0}, .effect = effect, .brightness = brightness};
}

const Settings cycling = lit(Backlight::spectrumCyclingEffect);

/// A desktop whose user wants no motion.
class StillStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override
    {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

QImage painted(const PictureLight &light)
{
    QImage image(400, 120, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    light.paint(painter, {QRect(20, 20, 170, 80), QRect(200, 20, 180, 80)}, 20);
    return image;
}

QColor middle(const QImage &image)
{
    return image.pixelColor(image.rect().center());
}

} // namespace

class PictureLightTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paintsNothingWhenOff_data();
    void paintsNothingWhenOff();
    void paintsItsColorAndDims();
    void reportsOnlyChanges();
    void movesOnlyWhenCyclingAndVisible();
    void showsAllColorsStillWithoutMotion();
    void pictureShowsItBetweenTheKeys();
    void pictureIsDarkWithoutAKeyboard();
    void pictureMovesOnlyWhenVisibleAndAllowed();
};

void PictureLightTest::paintsNothingWhenOff_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<int>("brightness");
    QTest::newRow("switched off") << false << 4;
    QTest::newRow("brightness off") << true << 0;
}

void PictureLightTest::paintsNothingWhenOff()
{
    QFETCH(bool, isOn);
    QFETCH(int, brightness);
    for (const int effect : {Backlight::fixedColorEffect, Backlight::spectrumCyclingEffect}) {
        Settings settings = lit(effect, brightness);
        settings.isOn = isOn;
        PictureLight light;
        light.show(settings);
        QImage white = painted(PictureLight());
        QCOMPARE(middle(white), QColor(Qt::white));
        QCOMPARE(painted(light), white);
    }
}

void PictureLightTest::paintsItsColorAndDims()
{
    int before = 255;
    for (int brightness = 1; brightness <= 4; ++brightness) {
        PictureLight light;
        light.show(lit(Backlight::fixedColorEffect, brightness));
        const QColor shown = middle(painted(light));
        QCOMPARE(shown.red(), 255);
        QVERIFY(shown.green() < before - 30); // more light at each step
        QCOMPARE(shown.green(), shown.blue());
        before = shown.green();
    }
}

void PictureLightTest::reportsOnlyChanges()
{
    PictureLight light;
    const QSignalSpy changes(&light, &PictureLight::changed);
    light.show(lit());
    light.show(lit());
    light.setSeen(true);
    light.setMotionAllowed(true);
    QCOMPARE(changes.size(), 1);
    light.show(cycling);
    light.setMotionAllowed(false);
    QCOMPARE(changes.size(), 3);
}

void PictureLightTest::movesOnlyWhenCyclingAndVisible()
{
    PictureLight light;
    light.show(cycling);
    QVERIFY(!light.isMoving());
    light.setSeen(true);
    QVERIFY(light.isMoving());
    const QImage first = painted(light);
    QTRY_VERIFY(painted(light) != first);
    QSignalSpy changes(&light, &PictureLight::changed);
    QVERIFY(changes.wait(3000));
    light.show(lit());
    QVERIFY(!light.isMoving());
    light.show(lit(Backlight::spectrumCyclingEffect, 0));
    QVERIFY(!light.isMoving());
    light.show(cycling);
    light.setSeen(false);
    QVERIFY(!light.isMoving());
}

void PictureLightTest::showsAllColorsStillWithoutMotion()
{
    PictureLight light;
    light.show(cycling);
    light.setSeen(true);
    light.setMotionAllowed(false);
    QVERIFY(!light.isMoving());
    const QImage still = painted(light);
    const int y = still.height() / 2;
    const QColor left = still.pixelColor(still.width() / 6, y);
    const QColor right = still.pixelColor(still.width() * 5 / 6, y);
    QVERIFY(qAbs(left.hsvHue() - right.hsvHue()) > 100);
    QTest::qWait(int(2 * Backlight::spectrumStep.count()));
    QCOMPARE(painted(light), still);
}

void PictureLightTest::pictureShowsItBetweenTheKeys()
{
    KeyboardPicture picture;
    picture.resize(picture.sizeHint());
    const QImage dark = picture.grab().toImage();
    picture.light().show(lit());
    const QImage red = picture.grab().toImage();
    QVERIFY(dark != red);
    // Just below a key there is only the case and the key lighting.
    const QRect escape = picture.button(QLatin1StringView("mESC"))->geometry();
    const QPoint between(escape.center().x(), escape.bottom() + 1);
    QVERIFY(red.pixelColor(between).red() > red.pixelColor(between).green() + 80);
    QVERIFY(dark.pixelColor(between).red() < dark.pixelColor(between).green() + 20);
    // The caps remain unchanged, so legends and marks stay readable.
    const QPoint onTheCap = escape.center();
    QCOMPARE(red.pixelColor(onTheCap), dark.pixelColor(onTheCap));
}

void PictureLightTest::pictureIsDarkWithoutAKeyboard()
{
    KeyboardPicture picture;
    picture.resize(picture.sizeHint());
    for (KeyButton *button : picture.buttons())
        button->setEnabled(false);
    const QImage dark = picture.grab().toImage();
    picture.light().show(lit());
    QCOMPARE(picture.grab().toImage(), dark);
}

void PictureLightTest::pictureMovesOnlyWhenVisibleAndAllowed()
{
    KeyboardPicture picture;
    picture.light().show(cycling);
    QVERIFY(!picture.light().isMoving());
    picture.show();
    QVERIFY(picture.light().isMoving());
    picture.hide();
    QVERIFY(!picture.light().isMoving());
    picture.show();
    StillStyle still;
    picture.setStyle(&still);
    QVERIFY(!picture.light().isMoving());
    picture.setStyle(nullptr);
    QVERIFY(picture.light().isMoving());
}

QTEST_MAIN(PictureLightTest)
#include "picturelighttest.moc"
