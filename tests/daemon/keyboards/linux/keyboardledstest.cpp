// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keyboardleds.h"
#include "tests/support/testmain.h"

#include "tests/daemon/keyboards/linux/ledfolder.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using Channel = KeyboardLed::Channel;

namespace {

const QString usb = u"pci0/usb1/1-2"_s;
const QString usbHid = usb + u"/1-2:1.0/0003:1B2C:00AF.0001"_s;

} // namespace

class KeyboardLedsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mTree.reset(); }

    void lightOfTheSameDeviceBelongsToIt();
    void otherInterfacesOfTheDeviceBelongToIt();
    void ledsOfOtherKeyboardsDoNotBelongToIt();
    void devicesOfOneRadioAreDistinguished();
    void builtInKeyboardHasTheLightOfTheMachine();
    void pluggedKeyboardDoesNotHaveTheLightOfTheMachine();
    void indicatorsAreNotKeyLighting_data();
    void indicatorsAreNotKeyLighting();
    void colorsAreInTheOrderOfTheFile_data();
    void colorsAreInTheOrderOfTheFile();
    void ledOfOneColorIsKnownByItsName_data();
    void ledOfOneColorIsKnownByItsName();
    void ledWithUnknownColorsIsLeftOut_data();
    void ledWithUnknownColorsIsLeftOut();
    void missingDeviceHasNoLeds();

private:
    QStringList names(const QStringList &nodes) const;
    std::unique_ptr<LedFolder> mTree;
};

void KeyboardLedsTest::init()
{
    mTree = std::make_unique<LedFolder>();
    mTree->addDevice(usb, {{u"idVendor"_s, "1b2c"}});
    mTree->addNode(usbHid, 3);
}

QStringList KeyboardLedsTest::names(const QStringList &nodes) const
{
    QStringList result;
    for (const KeyboardLed &led : keyboardLeds(nodes, mTree->folders()))
        result += led.name;
    return result;
}

void KeyboardLedsTest::lightOfTheSameDeviceBelongsToIt()
{
    mTree->addLed(usbHid, u"b:rgb:kbd_backlight"_s, 255, "red green blue");
    mTree->addLed(usbHid, u"a:rgb:zone"_s, 255, "red green blue");
    mTree->addLed(usbHid, u"c:white:fan"_s, 255);
    QCOMPARE(names({u"/dev/input/event3"_s}), (QStringList{u"a:rgb:zone"_s, u"b:rgb:kbd_backlight"_s}));
}

void KeyboardLedsTest::otherInterfacesOfTheDeviceBelongToIt()
{
    mTree->addLed(usb + u"/1-2:1.1/0003:1B2C:00AF.0002"_s, u"a:rgb:kbd_backlight"_s, 255, "red green blue");
    QCOMPARE(names({u"/dev/input/event3"_s}), QStringList{u"a:rgb:kbd_backlight"_s});
}

void KeyboardLedsTest::ledsOfOtherKeyboardsDoNotBelongToIt()
{
    const QString other = u"pci0/usb1/1-3"_s;
    mTree->addDevice(other, {{u"idVendor"_s, "1b2c"}});
    mTree->addNode(other + u"/1-3:1.0/0003:1B2C:00AF.0003"_s, 4);
    mTree->addLed(other + u"/1-3:1.0/0003:1B2C:00AF.0003"_s, u"a:rgb:kbd_backlight"_s, 255, "red green blue");
    QCOMPARE(names({u"/dev/input/event3"_s}), QStringList());
    QCOMPARE(names({u"/dev/input/event3"_s, u"/dev/input/event4"_s}), QStringList{u"a:rgb:kbd_backlight"_s});
}

void KeyboardLedsTest::devicesOfOneRadioAreDistinguished()
{
    const QString radio = usb + u"/1-2:1.0/bluetooth/hci0"_s;
    mTree->addNode(radio + u"/hci0:1/0005:1B2C:00AF.0004"_s, 5);
    mTree->addLed(radio + u"/hci0:1/0005:1B2C:00AF.0004"_s, u"mine:rgb:kbd_backlight"_s, 255, "red green blue");
    mTree->addLed(radio + u"/hci0:2/0005:1B2C:00AF.0005"_s, u"other:rgb:kbd_backlight"_s, 255, "red green blue");
    QCOMPARE(names({u"/dev/input/event5"_s}), QStringList{u"mine:rgb:kbd_backlight"_s});
}

void KeyboardLedsTest::builtInKeyboardHasTheLightOfTheMachine()
{
    mTree->addNode(u"platform/i8042/serio0"_s, 0);
    mTree->addLed(u"platform/laptop"_s, u"laptop::kbd_backlight"_s, 3);
    mTree->addLed(u"platform/laptop"_s, u"laptop:rgb:lid"_s, 255, "red green blue");
    mTree->addLed(usbHid, u"usb::kbd_backlight"_s, 3);
    QCOMPARE(names({u"/dev/input/event0"_s}), QStringList{u"laptop::kbd_backlight"_s});
    mTree->addNode(u"platform/i2c-1/0018:1B2C:00AF.0001"_s, 8);
    QCOMPARE(names({u"/dev/input/event8"_s}), QStringList{u"laptop::kbd_backlight"_s});
}

void KeyboardLedsTest::pluggedKeyboardDoesNotHaveTheLightOfTheMachine()
{
    mTree->addLed(u"platform/laptop"_s, u"laptop::kbd_backlight"_s, 3);
    QCOMPARE(names({u"/dev/input/event3"_s}), QStringList());
}

void KeyboardLedsTest::indicatorsAreNotKeyLighting_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name :
         {u"input7::numlock"_s, u"input7::capslock"_s, u"a:rgb:capslock"_s, u"a:rgb:indicator-2"_s, u"a:rgb:status"_s})
        QTest::newRow(qPrintable(name)) << name;
}

void KeyboardLedsTest::indicatorsAreNotKeyLighting()
{
    QFETCH(QString, name);
    mTree->addLed(usbHid, name, 255, "red green blue");
    QCOMPARE(names({u"/dev/input/event3"_s}), QStringList());
}

void KeyboardLedsTest::colorsAreInTheOrderOfTheFile_data()
{
    QTest::addColumn<QByteArray>("colors");
    QTest::addColumn<QList<Channel>>("channels");
    using Channels = QList<Channel>;
    QTest::newRow("usual") << QByteArray("red green blue") << Channels{Channel::red, Channel::green, Channel::blue};
    QTest::newRow("turned") << QByteArray("green blue red") << Channels{Channel::green, Channel::blue, Channel::red};
    QTest::newRow("with white") << QByteArray("red green blue white")
                                << Channels{Channel::red, Channel::green, Channel::blue, Channel::unused};
    QTest::newRow("two whites") << QByteArray("white amber") << Channels{Channel::anyColor, Channel::anyColor};
}

void KeyboardLedsTest::colorsAreInTheOrderOfTheFile()
{
    QFETCH(QByteArray, colors);
    mTree->addLed(usbHid, u"a:rgb:kbd_backlight"_s, 100, colors);
    const QList<KeyboardLed> leds = keyboardLeds({u"/dev/input/event3"_s}, mTree->folders());
    QCOMPARE(leds.size(), 1);
    QTEST(leds.first().channels, "channels");
    QCOMPARE(leds.first().maximum, 100U);
    QVERIFY(leds.first().showsColor());
}

void KeyboardLedsTest::ledOfOneColorIsKnownByItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Channel>("color");
    QTest::newRow("red") << u"a:red:kbd_backlight"_s << Channel::red;
    QTest::newRow("green") << u"a:b:green:kbd_backlight-2"_s << Channel::green;
    QTest::newRow("white") << u"a:white:kbd_backlight"_s << Channel::anyColor;
    QTest::newRow("none") << u"a::kbd_backlight"_s << Channel::anyColor;
    QTest::newRow("function alone") << u"kbd_backlight"_s << Channel::anyColor;
}

void KeyboardLedsTest::ledOfOneColorIsKnownByItsName()
{
    QFETCH(QString, name);
    mTree->addLed(usbHid, name, 3);
    const QList<KeyboardLed> leds = keyboardLeds({u"/dev/input/event3"_s}, mTree->folders());
    QCOMPARE(leds.size(), 1);
    QTEST(leds.first().color, "color");
    QVERIFY(leds.first().channels.isEmpty());
}

void KeyboardLedsTest::ledWithUnknownColorsIsLeftOut_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no colours") << u"multi_index"_s << QByteArray("");
    QTest::newRow("no maximum") << u"max_brightness"_s << QByteArray("");
    QTest::newRow("maximum of nothing") << u"max_brightness"_s << QByteArray("0");
    QTest::newRow("negative maximum") << u"max_brightness"_s << QByteArray("-1");
    QTest::newRow("maximum as text") << u"max_brightness"_s << QByteArray("bright");
    QTest::newRow("maximum too large") << u"max_brightness"_s << QByteArray("4294967295");
}

void KeyboardLedsTest::ledWithUnknownColorsIsLeftOut()
{
    const QString led = mTree->addLed(usbHid, u"a:rgb:kbd_backlight"_s, 255, "red green blue");
    mTree->addLed(usbHid, u"b:rgb:kbd_backlight"_s, 255, "red green blue");
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    LedFolder::write(led + u'/' + file, content);
    QCOMPARE(names({u"/dev/input/event3"_s}), QStringList{u"b:rgb:kbd_backlight"_s});
}

void KeyboardLedsTest::missingDeviceHasNoLeds()
{
    mTree->addLed(usbHid, u"a:rgb:kbd_backlight"_s, 255, "red green blue");
    mTree->addLed(u"platform/laptop"_s, u"laptop::kbd_backlight"_s, 3);
    QCOMPARE(names({u"/dev/input/event9"_s}), QStringList());
    QCOMPARE(names({}), QStringList());
    QCOMPARE(names({QString()}), QStringList());
    QVERIFY(keyboardLeds({u"/dev/input/event3"_s}, {.leds = u"/nonexistent"_s, .inputs = u"/nonexistent"_s}).isEmpty());
}

QTEST_GUILESS_MAIN(KeyboardLedsTest)
#include "keyboardledstest.moc"
