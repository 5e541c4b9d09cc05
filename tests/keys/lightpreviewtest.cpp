// SPDX-License-Identifier: MIT
// The preview of the light. Also draws it in both palettes into the folder `screenshots` beside the tests.
#include "keys/lightpreview.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QProxyStyle>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr Backlight::Settings red{.isOn = true,
                                  .color = {.red = 255, .green = 0, .blue = 0},
                                  .effect = Backlight::fixedColorEffect,
                                  .brightness = Backlight::maximumBrightness};

Backlight::Settings cycling()
{
    Backlight::Settings settings = red;
    settings.effect = Backlight::spectrumCyclingEffect;
    return settings;
}

/// A style that gives animations no time, as desktops do that ask for less motion.
class StillStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

/// How much more red than green the whole picture has.
qint64 redness(QWidget &widget)
{
    const QImage image = widget.grab().toImage();
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qRed(image.pixel(x, y)) - qGreen(image.pixel(x, y));
    }
    return sum;
}

} // namespace

class LightPreviewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mPreview.reset(); }

    void showsColourAndBrightness();
    void showsNoLightWhileDisabled();
    void movesOnlyWhileItIsShown();
    void lightThatDoesNotCycleDoesNotMove_data();
    void lightThatDoesNotCycleDoesNotMove();
    void doesNotMoveIfTheDesktopAsksForIt();
    void drawsTheLight_data();
    void drawsTheLight();

private:
    std::unique_ptr<LightPreview> mPreview;
};

void LightPreviewTest::init()
{
    mPreview = std::make_unique<LightPreview>();
    mPreview->resize(mPreview->sizeHint());
}

void LightPreviewTest::showsColourAndBrightness()
{
    const qint64 dark = redness(*mPreview);
    Backlight::Settings settings = red;
    mPreview->light().show(settings);
    const qint64 bright = redness(*mPreview);
    settings.brightness = 1;
    mPreview->light().show(settings);
    const qint64 dim = redness(*mPreview);
    QVERIFY(bright > dim);
    QVERIFY(dim > dark);
    settings.isOn = false;
    mPreview->light().show(settings);
    QCOMPARE(redness(*mPreview), dark);
    settings = red;
    settings.color = {.red = 0, .green = 255, .blue = 0};
    mPreview->light().show(settings);
    QVERIFY(redness(*mPreview) < dark);
}

void LightPreviewTest::showsNoLightWhileDisabled()
{
    mPreview->setEnabled(false);
    const QImage dark = mPreview->grab().toImage();
    mPreview->light().show(red);
    QCOMPARE(mPreview->grab().toImage(), dark);
    mPreview->setEnabled(true);
    QVERIFY(mPreview->grab().toImage() != dark);
}

void LightPreviewTest::movesOnlyWhileItIsShown()
{
    mPreview->light().show(cycling());
    QVERIFY(!mPreview->light().isMoving());
    mPreview->show();
    QVERIFY(mPreview->light().isMoving());
    mPreview->hide();
    QVERIFY(!mPreview->light().isMoving());
}

void LightPreviewTest::lightThatDoesNotCycleDoesNotMove_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<int>("effect");
    QTest::newRow("fixed colour") << true << Backlight::fixedColorEffect;
    QTest::newRow("unknown effect") << true << 2;
}

void LightPreviewTest::lightThatDoesNotCycleDoesNotMove()
{
    QFETCH(bool, isOn);
    QFETCH(int, effect);
    Backlight::Settings settings = red;
    settings.isOn = isOn;
    settings.effect = effect;
    mPreview->light().show(settings);
    mPreview->show();
    QVERIFY(!mPreview->light().isMoving());
}

void LightPreviewTest::doesNotMoveIfTheDesktopAsksForIt()
{
    StillStyle style;
    mPreview->light().show(cycling());
    mPreview->show();
    QVERIFY(mPreview->light().isMoving());
    mPreview->setStyle(&style);
    QVERIFY(!mPreview->light().isMoving());
    mPreview->setStyle(nullptr);
    QVERIFY(mPreview->light().isMoving());
}

void LightPreviewTest::drawsTheLight_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void LightPreviewTest::drawsTheLight()
{
    QFETCH(bool, isDark);
    wearPalette(isDark);
    mPreview->light().show(red);
    mPreview->setPalette(QApplication::palette());
    QVERIFY(savePicture(pictureOf(mPreview.get(), nullptr, {}), u"light-preview"_s));
}

QTEST_MAIN(LightPreviewTest)
#include "lightpreviewtest.moc"
