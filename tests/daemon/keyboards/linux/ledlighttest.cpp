// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/ledlight.h"
#include "tests/support/testmain.h"

#include "tests/daemon/keyboards/linux/ledfolder.h"
#include "tests/support/ordinaryuser.h"

#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString keyboard = u"uhid/0003:1B2C:00AF.0001"_s;
const QStringList nodes{u"/dev/input/event3"_s};
const QByteArray untouched = "untouched";

Backlight::Settings fixed(Backlight::Color color, int brightness = Backlight::maximumBrightness)
{
    return {.isOn = true, .color = color, .effect = Backlight::fixedColorEffect, .brightness = brightness};
}

Backlight::Settings cycling(int brightness = Backlight::maximumBrightness)
{
    return {.isOn = true, .color = {}, .effect = Backlight::spectrumCyclingEffect, .brightness = brightness};
}

} // namespace

class LedLightTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsColorAndBrightness_data();
    void showsColorAndBrightness();
    void colorFollowsTheOrderOfTheLed();
    void dimsInSteps_data();
    void dimsInSteps();
    void switchesOff_data();
    void switchesOff();
    void everyZoneIsLit();
    void ledsOfOneColorMixIt();
    void cyclesThroughTheColors();
    void cyclingWritesOnlyTheColor();
    void writesOnlyWhatChanges();
    void sleepsUnlessAColorChanges_data();
    void sleepsUnlessAColorChanges();
    void keepsTheSettingsWithoutLeds();
    void writesAgainForAReturningKeyboard();
    void ledsOfARemovedKeyboardAreLeftAlone();
    void errorIsLoggedOnceAndNotTriedAgain();
    void brokenColorEndsTheCycling();
    void sessionSetsTheBrightnessOfALedWithoutRights();
    void continuesAutomatically();

private:
    void makeLight();
    QByteArray brightness() const { return LedFolder::read(mLed + u"/brightness"_s); }
    QByteArray intensity() const { return LedFolder::read(mLed + u"/multi_intensity"_s); }
    void touch() const;

    std::unique_ptr<LedFolder> mTree;
    QString mLed; // has several colours
    Backlight::Time mNow{};
    std::unique_ptr<LedLight> mLight;
};

void LedLightTest::init()
{
    mNow = 0s;
    mTree = std::make_unique<LedFolder>();
    mTree->addNode(keyboard, 3);
    mLed = mTree->addLed(keyboard, u"a:rgb:kbd_backlight"_s, 255, "red green blue");
    makeLight();
}

void LedLightTest::makeLight()
{
    mLight = std::make_unique<LedLight>(LedLight::Services{.folders = mTree->folders(), .setForeignBrightness = {}},
                                        [this] { return mNow; });
}

void LedLightTest::cleanup()
{
    mLight.reset();
    mTree.reset();
}

/// Makes every write visible, even one of the same value.
void LedLightTest::touch() const
{
    LedFolder::write(mLed + u"/brightness"_s, untouched);
    LedFolder::write(mLed + u"/multi_intensity"_s, untouched);
}

void LedLightTest::showsColorAndBrightness_data()
{
    QTest::addColumn<bool>("nodesFirst");
    QTest::newRow("keyboard before light") << true;
    QTest::newRow("light before keyboard") << false;
}

void LedLightTest::showsColorAndBrightness()
{
    QFETCH(bool, nodesFirst);
    if (nodesFirst)
        mLight->useNodes(nodes);
    mLight->show(fixed({255, 128, 0}));
    if (!nodesFirst)
        mLight->useNodes(nodes);
    QCOMPARE(mLight->ledCount(), 1);
    QCOMPARE(intensity(), QByteArray("255 128 0"));
    QCOMPARE(brightness(), QByteArray("255"));
}

void LedLightTest::colorFollowsTheOrderOfTheLed()
{
    const QString other = mTree->addLed(keyboard, u"b:rgb:kbd_backlight"_s, 100, "blue white red green");
    mLight->useNodes(nodes);
    mLight->show(fixed({255, 51, 102}));
    QCOMPARE(LedFolder::read(other + u"/multi_intensity"_s), QByteArray("40 0 100 20"));
    QCOMPARE(intensity(), QByteArray("255 51 102"));
}

void LedLightTest::dimsInSteps_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QByteArray>("ofMany");
    QTest::addColumn<QByteArray>("ofThree");
    QTest::addColumn<QByteArray>("ofOne");
    QTest::newRow("off") << 0 << QByteArray("0") << QByteArray("0") << QByteArray("0");
    QTest::newRow("dim") << 1 << QByteArray("64") << QByteArray("1") << QByteArray("1");
    QTest::newRow("normal") << 2 << QByteArray("128") << QByteArray("2") << QByteArray("1");
    QTest::newRow("three") << 3 << QByteArray("191") << QByteArray("2") << QByteArray("1");
    QTest::newRow("bright") << 4 << QByteArray("255") << QByteArray("3") << QByteArray("1");
}

void LedLightTest::dimsInSteps()
{
    const QString three = mTree->addLed(keyboard, u"b::kbd_backlight"_s, 3);
    const QString one = mTree->addLed(keyboard, u"c::kbd_backlight"_s, 1);
    mLight->useNodes(nodes);
    QFETCH(int, level);
    mLight->show(fixed({0, 0, 255}));
    mLight->show(fixed({0, 0, 255}, level));
    QTEST(brightness(), "ofMany");
    QTEST(LedFolder::read(three + u"/brightness"_s), "ofThree");
    QTEST(LedFolder::read(one + u"/brightness"_s), "ofOne");
    QCOMPARE(intensity(), QByteArray("0 0 255")); // the LED dims by itself
}

void LedLightTest::switchesOff_data()
{
    QTest::addColumn<Backlight::Settings>("settings");
    Backlight::Settings off = fixed({255, 255, 255});
    off.isOn = false;
    QTest::newRow("switched off") << off;
    QTest::newRow("brightness of 0") << fixed({255, 255, 255}, 0);
    QTest::newRow("cycling with a brightness of 0") << cycling(0);
    QTest::newRow("black") << fixed({0, 0, 0});
    QTest::newRow("never set") << Backlight::Settings();
}

void LedLightTest::switchesOff()
{
    const QString white = mTree->addLed(keyboard, u"b::kbd_backlight"_s, 3);
    mLight->useNodes(nodes);
    mLight->show(fixed({255, 255, 255}));
    QCOMPARE(brightness(), QByteArray("255"));
    QFETCH(Backlight::Settings, settings);
    mLight->show(settings);
    QCOMPARE(brightness(), QByteArray("0"));
    QCOMPARE(LedFolder::read(white + u"/brightness"_s), QByteArray("0"));
    QVERIFY(!mLight->sleep());
}

void LedLightTest::everyZoneIsLit()
{
    QStringList zones;
    for (int key = 0; key < 110; ++key)
        zones += mTree->addLed(keyboard, u"a:rgb:kbd_zoned_backlight-%1"_s.arg(key), 255, "red green blue");
    mLight->useNodes(nodes);
    mLight->show(fixed({1, 2, 3}));
    QCOMPARE(mLight->ledCount(), 111);
    for (const QString &zone : zones)
        QCOMPARE(LedFolder::read(zone + u"/multi_intensity"_s), QByteArray("1 2 3"));
}

void LedLightTest::ledsOfOneColorMixIt()
{
    const QString red = mTree->addLed(keyboard, u"b:red:kbd_backlight"_s, 255);
    const QString green = mTree->addLed(keyboard, u"b:green:kbd_backlight"_s, 255);
    const QString blue = mTree->addLed(keyboard, u"b:blue:kbd_backlight"_s, 100);
    mLight->useNodes(nodes);
    mLight->show(fixed({200, 0, 255}, 2));
    QCOMPARE(LedFolder::read(red + u"/brightness"_s), QByteArray("100"));
    QCOMPARE(LedFolder::read(green + u"/brightness"_s), QByteArray("0"));
    QCOMPARE(LedFolder::read(blue + u"/brightness"_s), QByteArray("50"));
}

void LedLightTest::cyclesThroughTheColors()
{
    mLight->useNodes(nodes);
    mLight->show(cycling(2));
    QCOMPARE(intensity(), QByteArray("255 0 0"));
    QCOMPARE(brightness(), QByteArray("128"));
    QByteArrayList seen;
    for (; mNow < Backlight::spectrumPeriod; mNow += Backlight::spectrumStep) {
        mLight->look();
        const Backlight::Color color = Backlight::colorAt(cycling(), mNow);
        QCOMPARE(intensity(), u"%1 %2 %3"_s.arg(color.red).arg(color.green).arg(color.blue).toLatin1());
        seen += intensity();
    }
    QVERIFY(seen.contains("0 255 0"));
    QVERIFY(seen.contains("0 0 255"));
}

void LedLightTest::cyclingWritesOnlyTheColor()
{
    mLight->useNodes(nodes);
    mLight->show(cycling());
    touch();
    mNow += Backlight::spectrumStep;
    mLight->look();
    QVERIFY(intensity() != untouched);
    QCOMPARE(brightness(), untouched);
}

void LedLightTest::writesOnlyWhatChanges()
{
    mLight->useNodes(nodes);
    mLight->show(fixed({255, 0, 0}));
    touch();
    mLight->show(fixed({255, 0, 0}));
    mLight->look();
    QCOMPARE(intensity(), untouched);
    QCOMPARE(brightness(), untouched);
    mLight->show(fixed({255, 0, 0}, 1));
    QCOMPARE(intensity(), untouched);
    QCOMPARE(brightness(), QByteArray("64"));
    touch();
    mLight->show(fixed({0, 255, 0}, 1));
    QCOMPARE(intensity(), QByteArray("0 255 0"));
    QCOMPARE(brightness(), untouched);
    touch();
    mLight->show(fixed({0, 255, 0}, 0));
    mLight->show(fixed({0, 255, 0}, 1)); // the LED has kept its colour
    QCOMPARE(intensity(), untouched);
}

void LedLightTest::sleepsUnlessAColorChanges_data()
{
    QTest::addColumn<QString>("led");
    QTest::addColumn<QByteArray>("colors");
    QTest::addColumn<Backlight::Settings>("settings");
    QTest::addColumn<bool>("isAsleep");
    QTest::newRow("cycling") << u"x:rgb:kbd_backlight"_s << QByteArray("red green blue") << cycling() << false;
    QTest::newRow("cycling of one colour") << u"x:red:kbd_backlight"_s << QByteArray() << cycling() << false;
    QTest::newRow("cycling of white") << u"x::kbd_backlight"_s << QByteArray() << cycling() << true;
    QTest::newRow("cycling of no LED") << QString() << QByteArray() << cycling() << true;
    QTest::newRow("dark cycling") << u"x:rgb:kbd_backlight"_s << QByteArray("red green blue") << cycling(0) << true;
    QTest::newRow("fixed") << u"x:rgb:kbd_backlight"_s << QByteArray("red green blue") << fixed({1, 2, 3}) << true;
}

void LedLightTest::sleepsUnlessAColorChanges()
{
    mTree = std::make_unique<LedFolder>();
    mTree->addNode(keyboard, 3);
    QFETCH(QString, led);
    QFETCH(QByteArray, colors);
    if (!led.isEmpty())
        mTree->addLed(keyboard, led, 255, colors);
    makeLight();
    mLight->useNodes(nodes);
    QFETCH(Backlight::Settings, settings);
    mLight->show(settings);
    QTEST(!mLight->sleep().has_value(), "isAsleep");
}

void LedLightTest::keepsTheSettingsWithoutLeds()
{
    mLight->show(cycling(3));
    QCOMPARE(mLight->ledCount(), 0);
    QVERIFY(mLight->settings() == cycling(3));
    QVERIFY(!mLight->sleep());
    QCOMPARE(brightness(), QByteArray("0"));
    mNow = Backlight::spectrumPeriod / 3;
    mLight->useNodes(nodes); // the keyboard appears later
    QCOMPARE(intensity(), QByteArray("0 255 0"));
    QCOMPARE(brightness(), QByteArray("191"));
}

void LedLightTest::writesAgainForAReturningKeyboard()
{
    mLight->useNodes(nodes);
    mLight->show(fixed({9, 8, 7}));
    LedFolder::write(mLed + u"/multi_intensity"_s, "255 255 255"); // initial state of the firmware
    LedFolder::write(mLed + u"/brightness"_s, "5");
    mLight->useNodes(nodes);
    QCOMPARE(intensity(), QByteArray("9 8 7"));
    QCOMPARE(brightness(), QByteArray("255"));
}

void LedLightTest::ledsOfARemovedKeyboardAreLeftAlone()
{
    mLight->useNodes(nodes);
    mLight->show(cycling());
    mLight->useNodes({});
    QVERIFY(!mLight->sleep());
    touch();
    mLight->show(fixed({9, 8, 7}, 1));
    QCOMPARE(intensity(), untouched);
    QCOMPARE(brightness(), untouched);
}

void LedLightTest::errorIsLoggedOnceAndNotTriedAgain()
{
    for (const QString &name : {u"multi_intensity"_s, u"brightness"_s}) {
        QVERIFY(QFile::remove(mLed + u'/' + name));
        QVERIFY(QDir(mLed).mkdir(name)); // cannot be written
    }
    mLight->useNodes(nodes);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"colour of the LED a:rgb:kbd_backlight cannot be set"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"brightness of the LED a:rgb:kbd_backlight cannot be"_s));
    mLight->show(fixed({1, 2, 3}));
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    mLight->show(fixed({3, 2, 1}, 1));
    for (const QString &name : {u"multi_intensity"_s, u"brightness"_s}) {
        QVERIFY(QDir(mLed).rmdir(name));
        LedFolder::write(mLed + u'/' + name, untouched);
    }
    mLight->show(fixed({3, 2, 3}, 2));
    QCOMPARE(intensity(), untouched);
    QCOMPARE(brightness(), untouched);
    mLight->useNodes(nodes); // a new keyboard causes a new attempt
    QCOMPARE(intensity(), QByteArray("3 2 3"));
}

void LedLightTest::brokenColorEndsTheCycling()
{
    QVERIFY(QFile::remove(mLed + u"/multi_intensity"_s));
    QVERIFY(QDir(mLed).mkdir(u"multi_intensity"_s));
    mLight->useNodes(nodes);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"colour of the LED"_s));
    mLight->show(cycling());
    QTRY_VERIFY(!mLight->sleep());
    QCOMPARE(brightness(), QByteArray("255"));
}

void LedLightTest::sessionSetsTheBrightnessOfALedWithoutRights()
{
    for (const QString &name : {u"multi_intensity"_s, u"brightness"_s})
        QVERIFY(QFile::setPermissions(mLed + u'/' + name, QFile::ReadOwner | QFile::ReadUser | QFile::ReadOther));
    const QString asked = asOrdinaryUser([this] {
        QString calls;
        LedLight light({.folders = mTree->folders(),
                        .setForeignBrightness = [&calls](const QString &led,
                                                         uint value) { calls += u"%1=%2;"_s.arg(led).arg(value); }},
                       [] { return 0s; });
        light.useNodes(nodes);
        light.show(fixed({1, 2, 3}));
        light.show(fixed({3, 2, 1}));
        light.show(fixed({3, 2, 1}, 1));
        return calls;
    });
    QCOMPARE(asked, u"a:rgb:kbd_backlight=255;a:rgb:kbd_backlight=64;"_s);
    QCOMPARE(brightness(), QByteArray("0"));
}

void LedLightTest::continuesAutomatically()
{
    mLight = std::make_unique<LedLight>(LedLight::Services{.folders = mTree->folders(), .setForeignBrightness = {}});
    mLight->useNodes(nodes);
    mLight->show(cycling());
    const QByteArray first = intensity();
    QTRY_VERIFY(intensity() != first);
}

QTEST_GUILESS_MAIN(LedLightTest)
#include "ledlighttest.moc"
