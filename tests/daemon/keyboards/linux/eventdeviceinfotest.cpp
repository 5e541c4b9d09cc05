// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventdeviceinfo.h"
#include "daemon/keyboards/linux/outputdevice.h"
#include "tests/daemon/keyboards/linux/nodes.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class EventDeviceInfoTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsCodesInTheFormOfTheKernel_data();
    void readsCodesInTheFormOfTheKernel();
    void classifiesEventDevices_data();
    void classifiesEventDevices();
    void nodesOfOneKeyboardBelongTogether();
    void deviceWithoutAKeyboardIsNotListed();
    void devicesAreListedAsWhatTheyAre();
    void keyboardThatIsAlsoThePointerIsUnusable();
    void keyboardsOfTheSameKindHaveDifferentIds();
    void textFromTheDeviceIsMadeHarmless();
    void orderFollowsTheEventDevices();
};

Q_DECLARE_METATYPE(EventDeviceInfo)

void EventDeviceInfoTest::readsCodesInTheFormOfTheKernel_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QList<int>>("codes");
    QTest::newRow("none") << QByteArray("0\n") << 64 << QList<int>();
    QTest::newRow("empty") << QByteArray() << 64 << QList<int>();
    QTest::newRow("one word") << QByteArray("120013\n") << 64 << QList<int>{0, 1, 4, 17, 20};
    QTest::newRow("highest word first") << QByteArray("1 0 2\n") << 64 << QList<int>{1, 128};
    QTest::newRow("words of 32 bits") << QByteArray("1 0 2\n") << 32 << QList<int>{1, 64};
    QTest::newRow("nonsense") << QByteArray("xyz 3") << 64 << QList<int>{0, 1};
    QTest::newRow("more than there are codes")
        << QByteArray("ff").append(QByteArray(" 0").repeated(12)) << 64 << QList<int>();
}

void EventDeviceInfoTest::readsCodesInTheFormOfTheKernel()
{
    QFETCH(QByteArray, text);
    QFETCH(int, wordBits);
    QFETCH(QList<int>, codes);
    const EventDeviceInfo::Codes result = EventDeviceInfo::codesFromText(text, wordBits);
    QList<int> found;
    for (int code = 0; code < KeyCodes::codeCount; ++code) {
        if (result[static_cast<std::size_t>(code)])
            found += code;
    }
    QCOMPARE(found, codes);
}

void EventDeviceInfoTest::classifiesEventDevices_data()
{
    QTest::addColumn<EventDeviceInfo>("node");
    QTest::addColumn<EventDeviceKind>("kind");
    const EventDeviceInfo keyboard = keyboardNode(3, u"/a"_s);
    QTest::newRow("keyboard") << keyboard << EventDeviceKind::keyboard;
    QTest::newRow("media keys") << mediaNode(4, u"/a"_s) << EventDeviceKind::extraKeys;
    QTest::newRow("without keys") << EventDeviceInfo{.node = u"/dev/input/event5"_s} << EventDeviceKind::other;
    EventDeviceInfo allKeys = keyboard;
    allKeys.keys.set();
    QTest::newRow("claims all keys") << allKeys << EventDeviceKind::keyboard;
    EventDeviceInfo allAxes = allKeys;
    allAxes.relativeAxes.set();
    allAxes.absoluteAxes.set();
    QTest::newRow("claims everything") << allAxes << EventDeviceKind::mixed;
    EventDeviceInfo mouse;
    mouse.keys.set(BTN_LEFT);
    mouse.relativeAxes.set(REL_X).set(REL_Y);
    QTest::newRow("mouse") << mouse << EventDeviceKind::pointer;
    EventDeviceInfo tablet = keyboard;
    tablet.absoluteAxes.set(ABS_X).set(ABS_Y);
    QTest::newRow("keyboard and touchpad on one node") << tablet << EventDeviceKind::mixed;
    EventDeviceInfo wheel = keyboard;
    wheel.relativeAxes.set(REL_HWHEEL);
    wheel.absoluteAxes.set(ABS_VOLUME);
    QTest::newRow("keyboard with a wheel") << wheel << EventDeviceKind::keyboard;
    EventDeviceInfo keypad;
    for (const int code : {KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5, KEY_KP6, KEY_KP7, KEY_KP8, KEY_KP9})
        keypad.keys.set(static_cast<std::size_t>(code));
    QTest::newRow("keypad") << keypad << EventDeviceKind::keyboard;
    EventDeviceInfo oneHand;
    for (const int code : {KEY_Q, KEY_W, KEY_E, KEY_A, KEY_S, KEY_D, KEY_TAB, KEY_LEFTSHIFT, KEY_SPACE})
        oneHand.keys.set(static_cast<std::size_t>(code));
    QTest::newRow("keyboard for one hand") << oneHand << EventDeviceKind::pad;
    EventDeviceInfo row;
    for (const int code : {KEY_F13, KEY_F14, KEY_F15, KEY_F16, KEY_F17, KEY_F18})
        row.keys.set(static_cast<std::size_t>(code));
    QTest::newRow("row of function keys") << row << EventDeviceKind::pad;
    EventDeviceInfo presenter;
    for (const int code : {KEY_PAGEUP, KEY_PAGEDOWN, KEY_B, KEY_F5, KEY_ESC, KEY_LEFTSHIFT})
        presenter.keys.set(static_cast<std::size_t>(code));
    QTest::newRow("presenter") << presenter << EventDeviceKind::extraKeys;
    EventDeviceInfo mouseWithKeys = oneHand;
    mouseWithKeys.relativeAxes.set(REL_X).set(REL_Y);
    QTest::newRow("mouse with keys") << mouseWithKeys << EventDeviceKind::pointer;
    EventDeviceInfo hotKeys;
    for (const int code : {KEY_POWER, KEY_MUTE, KEY_VOLUMEUP, KEY_HOME, KEY_END, KEY_PAGEUP, KEY_PAGEDOWN})
        hotKeys.keys.set(static_cast<std::size_t>(code));
    QTest::newRow("hot keys of a laptop") << hotKeys << EventDeviceKind::extraKeys;
    EventDeviceInfo own = keyboard;
    own.bus = OutputDevice::bus;
    own.vendor = OutputDevice::vendor;
    own.product = OutputDevice::product;
    QTest::newRow("our own") << own << EventDeviceKind::other;
}

void EventDeviceInfoTest::classifiesEventDevices()
{
    QFETCH(EventDeviceInfo, node);
    QFETCH(EventDeviceKind, kind);
    QCOMPARE(kindOf(node), kind);
}

void EventDeviceInfoTest::nodesOfOneKeyboardBelongTogether()
{
    EventDeviceInfo mouse = keyboardNode(6, u"/a"_s);
    mouse.relativeAxes.set(REL_X);
    const QList<KeyboardInfo> keyboards = keyboardsOf(
        {mediaNode(5, u"/a"_s), keyboardNode(3, u"/a"_s), keyboardNode(4, u"/a"_s), mouse, mediaNode(7, u"/b"_s)});
    QCOMPARE(keyboards.size(), 1);
    QCOMPARE(keyboards.first().device.nodes,
             (QStringList{u"/dev/input/event3"_s, u"/dev/input/event4"_s, u"/dev/input/event5"_s}));
    QCOMPARE(keyboards.first().nodes.size(), 3);
}

void EventDeviceInfoTest::deviceWithoutAKeyboardIsNotListed()
{
    QCOMPARE(keyboardsOf({mediaNode(1, u"/a"_s)}).size(), 0);
    QCOMPARE(keyboardsOf({}).size(), 0);
}

void EventDeviceInfoTest::devicesAreListedAsWhatTheyAre()
{
    EventDeviceInfo numberPad = node(2, u"/b"_s);
    for (const int code : {KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5, KEY_KP6, KEY_KP7, KEY_KP8, KEY_KP9})
        numberPad.keys.set(static_cast<std::size_t>(code));
    EventDeviceInfo keyPad = node(3, u"/c"_s);
    for (const int code : {KEY_Q, KEY_W, KEY_E, KEY_A, KEY_S, KEY_D})
        keyPad.keys.set(static_cast<std::size_t>(code));
    EventDeviceInfo padOfKeyboard = keyPad;
    padOfKeyboard.node = u"/dev/input/event5"_s;
    padOfKeyboard.devicePath = u"/a"_s;
    const QList<KeyboardInfo> keyboards =
        keyboardsOf({keyboardNode(1, u"/a"_s), padOfKeyboard, numberPad, keyPad, mediaNode(4, u"/c"_s)});
    QList<DeviceKind> kinds;
    QList<QStringList> nodes;
    for (const KeyboardInfo &keyboard : keyboards) {
        QCOMPARE(keyboard.device.problem, QString());
        kinds += keyboard.device.kind;
        nodes += keyboard.device.nodes;
    }
    QCOMPARE(kinds, (QList<DeviceKind>{DeviceKind::keyboard, DeviceKind::numberPad, DeviceKind::keyPad}));
    QCOMPARE(nodes, (QList<QStringList>{{u"/dev/input/event1"_s, u"/dev/input/event5"_s},
                                        {u"/dev/input/event2"_s},
                                        {u"/dev/input/event3"_s, u"/dev/input/event4"_s}}));
}

void EventDeviceInfoTest::keyboardThatIsAlsoThePointerIsUnusable()
{
    EventDeviceInfo mixed = keyboardNode(1, u"/a"_s);
    mixed.relativeAxes.set(REL_X).set(REL_Y);
    const QList<KeyboardInfo> keyboards = keyboardsOf({mixed, mediaNode(2, u"/a"_s)});
    QCOMPARE(keyboards.size(), 1);
    QCOMPARE(keyboards.first().nodes.size(), 0);
    QCOMPARE(keyboards.first().device.nodes, QStringList{u"/dev/input/event1"_s});
    QVERIFY(keyboards.first().device.problem.contains(u"/dev/input/event1"_s));
    // When the keys have a separate event device, that one can be used.
    const QList<KeyboardInfo> apart = keyboardsOf({mixed, keyboardNode(2, u"/a"_s)});
    QCOMPARE(apart.size(), 1);
    QCOMPARE(apart.first().device.nodes, QStringList{u"/dev/input/event2"_s});
    QCOMPARE(apart.first().device.problem, QString());
}

void EventDeviceInfoTest::keyboardsOfTheSameKindHaveDifferentIds()
{
    QList<EventDeviceInfo> nodes{keyboardNode(1, u"/a"_s), keyboardNode(2, u"/b"_s), keyboardNode(3, u"/c"_s),
                                 keyboardNode(4, u"/d"_s), keyboardNode(5, u"/e"_s)};
    nodes[0].serial = u"X1"_s;
    nodes[1].path = u"pci-0000:00:14.0-usb-0:3"_s;
    nodes[2].path = u"pci-0000:00:14.0-usb-0:4"_s;
    QStringList ids;
    for (const KeyboardInfo &keyboard : keyboardsOf(nodes))
        ids += keyboard.device.id;
    QCOMPARE(ids, (QStringList{u"1209:00ab:X1"_s, u"1209:00ab:pci-0000:00:14.0-usb-0:3"_s,
                               u"1209:00ab:pci-0000:00:14.0-usb-0:4"_s, u"1209:00ab"_s, u"1209:00ab:2"_s}));
}

void EventDeviceInfoTest::textFromTheDeviceIsMadeHarmless()
{
    EventDeviceInfo node = keyboardNode(1, u"/a"_s);
    node.name = u"Evil\x1b[2J\nboard"_s + QString(1000, u'x');
    node.serial = u"a b/..;\u00e9$(reboot)"_s;
    const InputDevice device = keyboardsOf({node}).first().device;
    QVERIFY(!device.name.contains(u'\x1b') && !device.name.contains(u'\n'));
    QVERIFY(device.name.size() <= 64);
    QCOMPARE(device.id, u"1209:00ab:a_b_..____reboot_"_s);
}

void EventDeviceInfoTest::orderFollowsTheEventDevices()
{
    QStringList nodes;
    for (const KeyboardInfo &keyboard :
         keyboardsOf({keyboardNode(10, u"/a"_s), keyboardNode(9, u"/b"_s), keyboardNode(2, u"/c"_s)}))
        nodes += keyboard.device.nodes;
    QCOMPARE(nodes, (QStringList{u"/dev/input/event2"_s, u"/dev/input/event9"_s, u"/dev/input/event10"_s}));
}

QTEST_APPLESS_MAIN(EventDeviceInfoTest)
#include "eventdeviceinfotest.moc"
