// SPDX-License-Identifier: MIT
#include "lighting/backlight.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace Backlight;

namespace {

Settings lit(int effect = fixedColorEffect, int brightness = maximumBrightness)
{
    return {.isOn = true, .color = {200, 100, 2}, .effect = effect, .brightness = brightness};
}

QVariantMap profile()
{
    const QVariantMap color{{u"Red"_s, 1.0}, {u"Green"_s, 0.5}, {u"Blue"_s, 0.0}};
    const QVariantMap other{{u"Red"_s, 0.0}, {u"Green"_s, 0.0}, {u"Blue"_s, 1.0}};
    return {{u"BacklightLED"_s, 1},
            {u"LEDKBColors"_s, QVariantList{color, other}},
            {u"LEDKBEffects"_s, 4},
            {u"BrightnessKBNormal"_s, 3}};
}

} // namespace

class BacklightTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheLightingGroup();
    void readsMissingAndWrongValues_data();
    void readsMissingAndWrongValues();
    void readsThePartsThatOnlyTheTabShows();
    void partsThatAreMissingOrWrong();
    void sharesAreAsPreciseAsTheRecord();
    void keepsBrightnessWithinItsBounds_data();
    void keepsBrightnessWithinItsBounds();
    void keepsComponentsWithinTheirBounds_data();
    void keepsComponentsWithinTheirBounds();
    void dimsByQuarters_data();
    void dimsByQuarters();
    void isDarkWhenSwitchedOff_data();
    void isDarkWhenSwitchedOff();
    void stillLightNeverChanges_data();
    void stillLightNeverChanges();
    void spectrumCyclesThroughAllColors();
    void spectrumChangesOnlyAtAnnouncedTimes();
    void spectrumDimsLikeAnyLight();
    void writesAndReadsColors();
    void refusesOtherColorTexts_data();
    void refusesOtherColorTexts();
};

void BacklightTest::readsTheLightingGroup()
{
    const Settings expected{.isOn = true, .color = {255, 128, 0}, .effect = 4, .brightness = 3};
    QCOMPARE(settingsOf(profile()), expected);
}

void BacklightTest::readsMissingAndWrongValues_data()
{
    QTest::addColumn<QVariantMap>("record");
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<QString>("color");
    const auto without = [](const QString &key) {
        QVariantMap record = profile();
        record.remove(key);
        return record;
    };
    const auto with = [](const QString &key, const QVariant &value) {
        QVariantMap record = profile();
        record.insert(key, value);
        return record;
    };
    QTest::newRow("empty record") << QVariantMap() << false << u"#ffffff"_s;
    QTest::newRow("no switch") << without(u"BacklightLED"_s) << false << u"#ff8000"_s;
    QTest::newRow("boolean switch") << with(u"BacklightLED"_s, true) << true << u"#ff8000"_s;
    QTest::newRow("no colours") << without(u"LEDKBColors"_s) << true << u"#ffffff"_s;
    QTest::newRow("empty colours") << with(u"LEDKBColors"_s, QVariantList()) << true << u"#ffffff"_s;
    QTest::newRow("colour is no dictionary") << with(u"LEDKBColors"_s, QVariantList{3}) << true << u"#000000"_s;
    QTest::newRow("colours are no array") << with(u"LEDKBColors"_s, u"red"_s) << true << u"#ffffff"_s;
}

void BacklightTest::readsMissingAndWrongValues()
{
    QFETCH(QVariantMap, record);
    const Settings settings = settingsOf(record);
    QTEST(settings.isOn, "isOn");
    QTEST(colorText(settings.color), "color");
}

void BacklightTest::readsThePartsThatOnlyTheTabShows()
{
    QVariantMap record = profile();
    QCOMPARE(colorsOf(record), record.value(u"LEDKBColors"_s).toList());
    QCOMPARE(effectOf(record), 4);
    QVERIFY(!isGameLightingOn(record));
    record.insert(u"GameLightingOn"_s, true);
    QVERIFY(isGameLightingOn(record));
}

void BacklightTest::partsThatAreMissingOrWrong()
{
    QCOMPARE(colorsOf({}), QVariantList());
    QCOMPARE(effectOf({}), std::nullopt);
    QVERIFY(!isGameLightingOn({}));
    for (const QVariant &value : {QVariant(u"red"_s), QVariant(QVariantMap{{u"Red"_s, 1.0}})}) {
        const QVariantMap record{{u"LEDKBColors"_s, value}, {u"LEDKBEffects"_s, value}, {u"GameLightingOn"_s, value}};
        QCOMPARE(colorsOf(record), QVariantList());
        QCOMPARE(effectOf(record), 0); // present, but not a number
        QVERIFY(!isGameLightingOn(record));
    }
}

void BacklightTest::sharesAreAsPreciseAsTheRecord()
{
    const Shares shares = sharesOf({{u"Red"_s, 0.123456}, {u"Green"_s, -0.5}, {u"Blue"_s, u"none"_s}});
    QCOMPARE(shares.red, 0.123456);
    QCOMPARE(shares.green, 0.0);
    QCOMPARE(shares.blue, 0.0);
}

void BacklightTest::keepsBrightnessWithinItsBounds_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("level");
    QTest::newRow("below") << QVariant(-1) << 0;
    QTest::newRow("lowest") << QVariant(0) << 0;
    QTest::newRow("highest") << QVariant(4) << 4;
    QTest::newRow("above") << QVariant(5) << 4;
    QTest::newRow("far above") << QVariant(std::numeric_limits<int>::max()) << 4;
    QTest::newRow("a real is cut") << QVariant(2.9) << 2;
    QTest::newRow("no number") << QVariant(QVariantMap()) << 0;
}

void BacklightTest::keepsBrightnessWithinItsBounds()
{
    QFETCH(QVariant, stored);
    QVariantMap record = profile();
    record[u"BrightnessKBNormal"_s] = stored;
    QTEST(settingsOf(record).brightness, "level");
}

void BacklightTest::keepsComponentsWithinTheirBounds_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("component");
    QTest::newRow("none") << QVariant(0.0) << 0;
    QTest::newRow("all") << QVariant(1.0) << 255;
    QTest::newRow("an integer") << QVariant(1) << 255;
    QTest::newRow("nearest step") << QVariant(0.2) << 51;
    QTest::newRow("below") << QVariant(-0.5) << 0;
    QTest::newRow("above") << QVariant(1.5) << 255;
    QTest::newRow("infinite") << QVariant(std::numeric_limits<double>::infinity()) << 255;
    QTest::newRow("no number") << QVariant(std::numeric_limits<double>::quiet_NaN()) << 0;
    QTest::newRow("no value") << QVariant() << 0;
}

void BacklightTest::keepsComponentsWithinTheirBounds()
{
    QFETCH(QVariant, stored);
    QFETCH(int, component);
    for (const QString &key : {u"Red"_s, u"Green"_s, u"Blue"_s}) {
        QVariantMap record = profile();
        record[u"LEDKBColors"_s] = QVariantList{QVariantMap{{key, stored}}};
        const Color color = settingsOf(record).color;
        QCOMPARE(int(color.red), key == "Red"_L1 ? component : 0);
        QCOMPARE(int(color.green), key == "Green"_L1 ? component : 0);
        QCOMPARE(int(color.blue), key == "Blue"_L1 ? component : 0);
    }
}

void BacklightTest::dimsByQuarters_data()
{
    QTest::addColumn<int>("brightness");
    QTest::addColumn<QString>("shown");
    QTest::newRow("off") << 0 << u"#000000"_s;
    QTest::newRow("dim") << 1 << u"#321901"_s;
    QTest::newRow("normal") << 2 << u"#643201"_s;
    QTest::newRow("between") << 3 << u"#964b02"_s;
    QTest::newRow("bright") << 4 << u"#c86402"_s;
}

void BacklightTest::dimsByQuarters()
{
    QFETCH(int, brightness);
    QTEST(colorText(colorAt(lit(fixedColorEffect, brightness), 0ms)), "shown");
}

void BacklightTest::isDarkWhenSwitchedOff_data()
{
    QTest::addColumn<int>("effect");
    QTest::newRow("fixed colour") << fixedColorEffect;
    QTest::newRow("spectrum cycling") << spectrumCyclingEffect;
}

void BacklightTest::isDarkWhenSwitchedOff()
{
    QFETCH(int, effect);
    Settings settings = lit(effect);
    QVERIFY(!colorAt(settings, 0ms).isOff());
    settings.isOn = false;
    QVERIFY(colorAt(settings, 0ms).isOff());
    QVERIFY(!nextChange(settings, 0ms));
    settings = lit(effect, minimumBrightness);
    QVERIFY(colorAt(settings, 0ms).isOff());
    QVERIFY(!nextChange(settings, 0ms));
}

void BacklightTest::stillLightNeverChanges_data()
{
    QTest::addColumn<int>("effect");
    QTest::newRow("fixed colour") << fixedColorEffect;
    QTest::newRow("unknown") << 2;
    QTest::newRow("unknown, negative") << -1;
}

void BacklightTest::stillLightNeverChanges()
{
    QFETCH(int, effect);
    for (Time time = 0ms; time <= 2 * spectrumPeriod; time += 777ms) {
        QCOMPARE(colorText(colorAt(lit(effect), time)), u"#c86402"_s);
        QVERIFY(!nextChange(lit(effect), time));
    }
}

void BacklightTest::spectrumCyclesThroughAllColors()
{
    const Settings settings = lit(spectrumCyclingEffect);
    const auto at = [&](int twelfth) { return colorText(colorAt(settings, spectrumPeriod * twelfth / 12)); };
    QCOMPARE(at(0), u"#ff0000"_s);
    QCOMPARE(at(2), u"#ffff00"_s);
    QCOMPARE(at(4), u"#00ff00"_s);
    QCOMPARE(at(6), u"#00ffff"_s);
    QCOMPARE(at(8), u"#0000ff"_s);
    QCOMPARE(at(10), u"#ff00ff"_s);
    QCOMPARE(at(12), u"#ff0000"_s);
    QCOMPARE(at(-4), at(8));
    // The change is smooth: no component jumps from one step to the next.
    for (Time time = 0ms; time < spectrumPeriod; time += spectrumStep) {
        const Color a = colorAt(settings, time);
        const Color b = colorAt(settings, time + spectrumStep);
        QVERIFY(qAbs(a.red - b.red) + qAbs(a.green - b.green) + qAbs(a.blue - b.blue) <= 26);
    }
}

void BacklightTest::spectrumChangesOnlyAtAnnouncedTimes()
{
    const Settings settings = lit(spectrumCyclingEffect);
    int changes = 0;
    for (Time time = -spectrumPeriod; time < spectrumPeriod;) {
        const Time next = *nextChange(settings, time);
        QVERIFY(next > time && next - time <= spectrumStep);
        QCOMPARE(colorAt(settings, next - 1ms), colorAt(settings, time));
        QVERIFY(colorAt(settings, next) != colorAt(settings, time));
        QCOMPARE(*nextChange(settings, next - 1ms), next);
        time = next;
        ++changes;
    }
    QCOMPARE(changes, 120); // five a second
}

void BacklightTest::spectrumDimsLikeAnyLight()
{
    QCOMPARE(colorText(colorAt(lit(spectrumCyclingEffect, 1), 0ms)), u"#400000"_s);
    QCOMPARE(colorText(colorAt(lit(spectrumCyclingEffect, 2), 0ms)), u"#800000"_s);
}

void BacklightTest::writesAndReadsColors()
{
    const Color color{0x0a, 0xff, 0x80};
    QCOMPARE(colorText(color), u"#0aff80"_s);
    QCOMPARE(colorFromText(u"#0aff80"_s), std::optional(color));
    QCOMPARE(colorFromText(u"#0AFF80"_s), std::optional(color));
}

void BacklightTest::refusesOtherColorTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("no digits") << u"#"_s;
    QTest::newRow("no mark") << u"0aff80"_s;
    QTest::newRow("too short") << u"#0aff8"_s;
    QTest::newRow("too long") << u"#0aff800"_s;
    QTest::newRow("no digit") << u"#0aff8g"_s;
    QTest::newRow("sign") << u"#+aff80"_s;
    QTest::newRow("space") << u"# aff80"_s;
    QTest::newRow("prefix") << u"#0xff80"_s;
    QTest::newRow("name") << u"red"_s;
}

void BacklightTest::refusesOtherColorTexts()
{
    QFETCH(QString, text);
    QVERIFY(!colorFromText(text));
}

QTEST_APPLESS_MAIN(BacklightTest)
#include "backlighttest.moc"
