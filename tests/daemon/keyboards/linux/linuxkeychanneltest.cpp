// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/linuxkeychannel.h"
#include "daemon/system/deadlinetimer.h"
#include "tests/daemon/keyboards/linux/fakeeventfile.h"
#include "tests/daemon/keyboards/linux/outputpipe.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

HidUsage key(quint16 usage)
{
    return {HidUsage::keyboardPage, usage};
}

constexpr quint16 usageA = 4;

} // namespace

class LinuxKeyChannelTest : public QObject, private KeyReceiver
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void reportsKeysByTheirUsage();
    void passesMediaKeysOn();
    void passesVolumeAndSwitchesOn();
    void macroKeysAreM1ToM5();
    void keysForTheKeyboardItselfAreReported_data();
    void keysForTheKeyboardItselfAreReported();
    void keyForTheLightIsReleasedWhereItWasPressed();
    void sendsNothingBeforeAKeyboardIsGrabbed();
    void sameModifierOnTwoKeyboardsEndsWithTheLast();
    void unpluggedKeyboardReleasesItsKeys();
    void unpluggedKeyboardLeavesTheKeysThatTheOtherHolds();
    void lastKeyboardReleasesEverything();
    void releaseChordReleasesEverything();
    void releaseChordWorksWhenTheChannelIsFlooded();
    void switchesTheLedsOfEveryKeyboard();
    void reportsTheTimeOfTheEvent();
    void tapGetsBothSides();
    void timesNeverGoBack();
    void moreNodesThanPlacesStayWithTheDesktop();
    void measuresKeysAndCountsLosses();
    void timeBetweenTwoUsesIsNotMeasured();
    void removedNodeIsClosed();

private:
    /// Like the key path without assignments.
    void takeKey(HidUsage usage, bool isDown, Time time, HidUsage systemKey) override
    {
        mKeys += u"%1 %2"_s.arg(usage.usage).arg(isDown ? "down"_L1 : "up"_L1);
        mTimes += time;
        mChannel->send(systemKey, isDown);
        mChannel->flush();
    }

    std::unique_ptr<OutputPipe> mPipe;
    std::unique_ptr<FakeNode> mFirst;
    std::unique_ptr<FakeNode> mSecond;
    std::unique_ptr<LinuxKeyChannel> mChannel;
    QStringList mKeys;
    QList<Time> mTimes;
};

void LinuxKeyChannelTest::init()
{
    mPipe = std::make_unique<OutputPipe>();
    mFirst = std::make_unique<FakeNode>();
    mSecond = std::make_unique<FakeNode>();
    mChannel = std::make_unique<LinuxKeyChannel>();
    mChannel->setOutput(mPipe->device());
    mKeys.clear();
    mTimes.clear();
    mChannel->setReceiver(this);
}

void LinuxKeyChannelTest::cleanup()
{
    mChannel->removeAllNodes(); // while the test can receive its signals
    mChannel.reset();
    mFirst.reset();
    mSecond.reset();
    mPipe.reset();
}

void LinuxKeyChannelTest::reportsKeysByTheirUsage()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mFirst->press(KEY_LEFTCTRL, 0x70039); // a table of the system has mapped Caps Lock to Control
    mFirst->release(KEY_LEFTCTRL, 0x70039);
    QTRY_COMPARE(mKeys, (QStringList{u"57 down"_s, u"57 up"_s}));
    QCOMPARE(mPipe->keys(), (QStringList{u"29 down"_s, u"29 up"_s}));
}

void LinuxKeyChannelTest::passesMediaKeysOn()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mFirst->press(KEY_PLAYPAUSE, 0xC00CD);
    mFirst->release(KEY_PLAYPAUSE, 0xC00CD);
    QTRY_COMPARE(mPipe->read(), (QStringList{u"164 down"_s, u"report"_s, u"164 up"_s, u"report"_s}));
    QCOMPARE(mKeys, QStringList());
}

void LinuxKeyChannelTest::passesVolumeAndSwitchesOn()
{
    mFirst->setSwitch(SW_MUTE_DEVICE, true);
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    QTRY_COMPARE(mPipe->keys(), QStringList{u"switch 14 on"_s});
    for (const int value : {300, 301, 0})
        mFirst->setVolume(value);
    QTRY_COMPARE(mPipe->read().sliced(2),
                 (QStringList{u"volume 300"_s, u"report"_s, u"volume 301"_s, u"report"_s, u"volume 0"_s, u"report"_s}));
    mSecond->setSwitch(SW_MUTE_DEVICE, true);
    mSecond->setSwitch(SW_CAMERA_LENS_COVER, true);
    QTRY_COMPARE(mPipe->keys().last(), u"switch 9 on"_s);
    mChannel->removeNode(1);
    QCOMPARE(mPipe->keys().last(), u"switch 9 on"_s); // the other keyboard's switch 14 is still on
    mChannel->removeNode(2);
    QCOMPARE(mPipe->keys().sliced(5), (QStringList{u"switch 9 off"_s, u"switch 14 off"_s}));
    QCOMPARE(mSecond->seenByDesktop(), (QStringList{u"switch 9 on"_s, u"switch 14 on"_s}));
}

void LinuxKeyChannelTest::macroKeysAreM1ToM5()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    // Without an assignment they pass unchanged, even when their HID usage is that of another key.
    mFirst->press(KEY_MACRO1);
    mFirst->press(KEY_MACRO5, 0x70068);
    mFirst->release(KEY_MACRO1);
    mFirst->release(KEY_MACRO5, 0x70068);
    mFirst->press(KEY_MACRO6);
    QTRY_COMPARE(mPipe->keys(), (QStringList{u"656 down"_s, u"660 down"_s, u"656 up"_s, u"660 up"_s, u"661 down"_s}));
    QCOMPARE(mKeys, (QStringList{u"106 down"_s, u"110 down"_s, u"106 up"_s, u"110 up"_s}));
    // On a keyboard with F15 for this key, it counts as F15.
    mSecond->press(KEY_F15, 0x7006A);
    mSecond->release(KEY_F15, 0x7006A);
    QTRY_COMPARE(mPipe->keys().sliced(5), (QStringList{u"185 down"_s, u"185 up"_s}));
}

void LinuxKeyChannelTest::keysForTheKeyboardItselfAreReported_data()
{
    using Own = KeyCodes::OwnKey;
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("isLit");
    QTest::addColumn<Own>("key"); // none: passed to the desktop
    QTest::newRow("brighter") << KEY_KBDILLUMUP << true << Own::brighter;
    QTest::newRow("darker") << KEY_KBDILLUMDOWN << true << Own::darker;
    QTest::newRow("switch") << KEY_KBDILLUMTOGGLE << true << Own::lightSwitch;
    QTest::newRow("brighter without a light") << KEY_KBDILLUMUP << false << Own::none;
    QTest::newRow("begin a macro") << KEY_MACRO_RECORD_START << false << Own::macro;
    QTest::newRow("end a macro") << KEY_MACRO_RECORD_STOP << false << Own::macro;
    QTest::newRow("another") << KEY_PLAYPAUSE << true << Own::none;
}

void LinuxKeyChannelTest::keysForTheKeyboardItselfAreReported()
{
    QFETCH(int, code);
    QFETCH(bool, isLit);
    QFETCH(KeyCodes::OwnKey, key);
    QList<KeyCodes::OwnKey> told;
    connect(mChannel.get(), &LinuxKeyChannel::ownKeyPressed, this, [&](KeyCodes::OwnKey own) { told += own; });
    connect(mChannel.get(), &KeyChannel::macroKeyPressed, this, [&] { told += KeyCodes::OwnKey::macro; });
    mChannel->setLit(isLit);
    mChannel->addNode(mFirst->open(), 1, true);
    mFirst->press(quint16(code));
    mFirst->release(quint16(code));
    mFirst->press(KEY_A);
    QTRY_COMPARE(mKeys, QStringList{u"4 down"_s});
    QStringList seen{u"30 down"_s};
    if (key == KeyCodes::OwnKey::none)
        seen = QStringList{u"%1 down"_s.arg(code), u"%1 up"_s.arg(code)} + seen;
    QCOMPARE(mPipe->keys(), seen);
    QCOMPARE(told, key == KeyCodes::OwnKey::none ? QList<KeyCodes::OwnKey>() : QList{key});
    disconnect(mChannel.get(), &LinuxKeyChannel::ownKeyPressed, this, nullptr);
    disconnect(mChannel.get(), &KeyChannel::macroKeyPressed, this, nullptr);
}

void LinuxKeyChannelTest::keyForTheLightIsReleasedWhereItWasPressed()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mFirst->press(KEY_KBDILLUMUP);
    QTRY_COMPARE(mPipe->keys(), QStringList{u"230 down"_s});
    mChannel->setLit(true);
    mFirst->release(KEY_KBDILLUMUP);
    QTRY_COMPARE(mPipe->keys(), (QStringList{u"230 down"_s, u"230 up"_s}));
    mFirst->press(KEY_KBDILLUMUP);
    mFirst->press(KEY_A);
    QTRY_COMPARE(mKeys, QStringList{u"4 down"_s});
    mChannel->setLit(false);
    mFirst->release(KEY_KBDILLUMUP);
    mFirst->release(KEY_A);
    QTRY_COMPARE(mPipe->keys().sliced(2), (QStringList{u"30 down"_s, u"30 up"_s}));
}

void LinuxKeyChannelTest::sendsNothingBeforeAKeyboardIsGrabbed()
{
    mChannel->send(key(usageA), true);
    mChannel->flush();
    QCOMPARE(mPipe->read(), QStringList());
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->send(key(usageA), true);
    mChannel->send({HidUsage::buttonPage, 1}, true);
    mChannel->flush();
    QCOMPARE(mPipe->keys(), (QStringList{u"30 down"_s, u"272 down"_s}));
}

void LinuxKeyChannelTest::sameModifierOnTwoKeyboardsEndsWithTheLast()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    mFirst->press(KEY_LEFTSHIFT);
    QTRY_COMPARE(mPipe->keys().size(), 1);
    mSecond->press(KEY_LEFTSHIFT);
    mSecond->press(KEY_A);
    QTRY_COMPARE(mPipe->keys().size(), 2);
    mFirst->release(KEY_LEFTSHIFT);
    mSecond->release(KEY_A);
    QTRY_COMPARE(mPipe->keys(), (QStringList{u"42 down"_s, u"30 down"_s, u"30 up"_s}));
    mSecond->release(KEY_LEFTSHIFT);
    QTRY_COMPARE(mPipe->keys().last(), u"42 up"_s);
}

void LinuxKeyChannelTest::unpluggedKeyboardReleasesItsKeys()
{
    QSignalSpy keysLost(mChannel.get(), &KeyChannel::keysLost);
    QSignalSpy changed(mChannel.get(), &LinuxKeyChannel::nodeChanged);
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    mFirst->press(KEY_A);
    mFirst->press(KEY_PLAYPAUSE);
    mSecond->press(KEY_B);
    QTRY_COMPARE(mPipe->keys().size(), 3);
    mFirst->unplug();
    QTRY_COMPARE(mPipe->keys().size(), 5);
    QCOMPARE(mPipe->keys().mid(3), (QStringList{u"30 up"_s, u"164 up"_s}));
    QCOMPARE(keysLost.size(), 0);
    QCOMPARE(changed.last().at(0).toInt(), 1);
    QCOMPARE(changed.last().at(1).value<EventDevice::State>(), EventDevice::State::gone);
}

void LinuxKeyChannelTest::unpluggedKeyboardLeavesTheKeysThatTheOtherHolds()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    for (const quint16 code : {KEY_LEFTCTRL, KEY_A, KEY_PLAYPAUSE})
        mFirst->press(code);
    QTRY_COMPARE(mPipe->keys().size(), 3);
    for (const quint16 code : {KEY_LEFTCTRL, KEY_PLAYPAUSE, KEY_C})
        mSecond->press(code);
    QTRY_COMPARE(mPipe->keys().size(), 4);
    mFirst->unplug();
    QTRY_COMPARE(mPipe->keys().size(), 5);
    QCOMPARE(mPipe->keys().last(), u"30 up"_s);
    mSecond->release(KEY_LEFTCTRL);
    mSecond->release(KEY_PLAYPAUSE);
    QTRY_COMPARE(mPipe->keys().sliced(5), (QStringList{u"29 up"_s, u"164 up"_s}));
}

void LinuxKeyChannelTest::lastKeyboardReleasesEverything()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->send(key(usageA), true); // by a macro, for example
    mChannel->flush();
    QSignalSpy keysLost(mChannel.get(), &KeyChannel::keysLost);
    mChannel->removeNode(1);
    QCOMPARE(keysLost.size(), 1);
    QCOMPARE(mPipe->keys(), (QStringList{u"30 down"_s, u"30 up"_s}));
    QVERIFY(!mFirst->isGrabbed());
}

void LinuxKeyChannelTest::releaseChordReleasesEverything()
{
    QSignalSpy releaseChordPressed(mChannel.get(), &LinuxKeyChannel::releaseChordPressed);
    QSignalSpy keysLost(mChannel.get(), &KeyChannel::keysLost);
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, false);
    mFirst->press(KEY_A);
    mFirst->press(KEY_ESC);
    mSecond->press(KEY_BACKSPACE);
    mSecond->press(KEY_PLAYPAUSE);
    QTRY_COMPARE(mPipe->keys().size(), 4);
    mFirst->press(KEY_ENTER);
    QTRY_COMPARE(releaseChordPressed.size(), 1);
    QCOMPARE(keysLost.size(), 1);
    QVERIFY(!mFirst->isGrabbed());
    QVERIFY(!mSecond->isGrabbed());
    QStringList up = mPipe->keys().mid(4);
    up.sort();
    QCOMPARE(up, (QStringList{u"1 up"_s, u"14 up"_s, u"164 up"_s, u"30 up"_s}));
    mChannel->send(key(usageA), true);
    mChannel->flush();
    QCOMPARE(mPipe->keys().size(), 8);
    mFirst->press(KEY_C); // returned to the desktop
    QCOMPARE(mFirst->seenByDesktop(), QStringList{u"46 down"_s});
}

void LinuxKeyChannelTest::releaseChordWorksWhenTheChannelIsFlooded()
{
    QSignalSpy releaseChordPressed(mChannel.get(), &LinuxKeyChannel::releaseChordPressed);
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    for (int count = 0; count < 20'000; ++count)
        mFirst->repeat(KEY_A);
    for (const quint16 code : {KEY_ESC, KEY_BACKSPACE, KEY_ENTER})
        mSecond->press(code);
    QTRY_COMPARE(releaseChordPressed.size(), 1);
    QVERIFY(mFirst->unread() > 0); // the release did not wait for the rest
}

void LinuxKeyChannelTest::switchesTheLedsOfEveryKeyboard()
{
    mChannel->addNode(mFirst->open(), 1, true);
    const QStringList initial = mFirst->leds(); // each set to the desktop's state
    QVERIFY(initial.contains(u"1 off"_s));
    mPipe->switchLed(LED_CAPSL, true);
    QTRY_COMPARE(mFirst->leds().last(), u"1 on"_s);
    mChannel->addNode(mSecond->open(), 2, true);
    QVERIFY(mSecond->leds().contains(u"1 on"_s));
    QVERIFY(mSecond->leds().contains(u"0 off"_s));
    mPipe->switchLed(0xFFFF, true);
    mPipe->switchLed(LED_CAPSL, false);
    QTRY_COMPARE(mSecond->leds().last(), u"1 off"_s);
}

void LinuxKeyChannelTest::reportsTheTimeOfTheEvent()
{
    mChannel->addNode(mFirst->open(), 1, true);
    const auto before = DeadlineTimer::now();
    mFirst->press(KEY_A);
    const auto after = DeadlineTimer::now();
    QTRY_COMPARE(mTimes.size(), 1);
    QVERIFY(mTimes.first() >= before && mTimes.first() <= after); // not the later time of the reading
    const auto removal = DeadlineTimer::now();
    mChannel->removeNode(1);
    QCOMPARE(mTimes.size(), 2);
    QVERIFY(mTimes.last() >= removal);
}

void LinuxKeyChannelTest::tapGetsBothSides()
{
    using Event = KeyTap::Event;
    using Side = KeyTap::Side;
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    mFirst->press(KEY_B);
    QTRY_COMPARE(mPipe->keys().size(), 1);
    KeyTap &tap = mChannel->tap();
    QVERIFY(!tap.take());
    tap.start();
    QStringList lines;
    const auto read = [&] {
        while (const std::optional<Event> event = tap.take())
            lines += u"%1 %2:%3 %4:%5 %6"_s.arg(event->side == Side::keyboard ? "in"_L1 : "out"_L1)
                         .arg(event->usage.page)
                         .arg(event->usage.usage)
                         .arg(event->type)
                         .arg(event->code)
                         .arg(event->value);
        return lines;
    };
    mFirst->press(KEY_LEFTCTRL, 0x70039); // Caps Lock by its label
    QTRY_COMPARE(read(), (QStringList{u"in 7:57 0:0 1"_s, u"out 0:0 1:29 1"_s}));
    mSecond->press(KEY_LEFTCTRL, 0x70039); // already down
    mSecond->press(KEY_PLAYPAUSE);
    mSecond->setVolume(9);
    mSecond->setSwitch(SW_DOCK, true);
    QTRY_COMPARE(read().sliced(2), (QStringList{u"in 0:0 1:164 1"_s, u"out 0:0 1:164 1"_s, u"in 0:0 3:32 9"_s,
                                                u"out 0:0 3:32 9"_s, u"in 0:0 5:5 1"_s, u"out 0:0 5:5 1"_s}));
    lines.clear();
    mChannel->removeNode(1); // Caps Lock is still held on the second
    QCOMPARE(read(), (QStringList{u"in 7:5 0:0 0"_s, u"out 0:0 1:48 0"_s}));
}

void LinuxKeyChannelTest::timesNeverGoBack()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mChannel->addNode(mSecond->open(), 2, true);
    for (int count = 0; count < 20; ++count) {
        FakeNode &node = count % 3 == 0 ? *mFirst : *mSecond;
        node.press(KEY_A);
        node.release(KEY_A);
    }
    QTRY_VERIFY(mFirst->unread() == 0 && mSecond->unread() == 0);
    QVERIFY(mTimes.size() >= 20);
    QVERIFY(std::ranges::is_sorted(mTimes));
}

void LinuxKeyChannelTest::moreNodesThanPlacesStayWithTheDesktop()
{
    std::vector<std::unique_ptr<FakeNode>> nodes;
    for (int index = 0; index <= KeyTranslator::maximumNodes; ++index) {
        nodes.push_back(std::make_unique<FakeNode>());
        mChannel->addNode(nodes.back()->open(), index, true);
    }
    QVERIFY(nodes[KeyTranslator::maximumNodes - 1]->isGrabbed());
    QVERIFY(!nodes.back()->isGrabbed());
    mChannel->removeAllNodes(); // before the event devices are destroyed
}

void LinuxKeyChannelTest::measuresKeysAndCountsLosses()
{
    mChannel->addNode(mFirst->open(), 1, true);
    QCOMPARE(mChannel->latency(), KeyLatency());
    mFirst->press(KEY_A);
    QTRY_COMPARE(mKeys.size(), 1);
    QTRY_COMPARE(mChannel->latency().count, quint64(1));
    mFirst->dropEvents();
    QTRY_COMPARE(mChannel->lostEvents(), quint64(1));
    mFirst->release(KEY_A);
    QTRY_COMPARE(mKeys.size(), 2);
    mChannel->removeNode(1);
    mChannel->addNode(mFirst->open(), 2, true);
    QCOMPARE(mChannel->latency(), KeyLatency()); // of this use only
    QCOMPARE(mChannel->lostEvents(), quint64(0));
}

void LinuxKeyChannelTest::timeBetweenTwoUsesIsNotMeasured()
{
    mChannel->addNode(mFirst->open(), 1, true);
    mFirst->press(KEY_A);
    QTRY_COMPARE(mKeys.size(), 1);
    mChannel->removeNode(1); // this releases A
    QCOMPARE(mKeys.size(), 2);
    mFirst->release(KEY_A);
    const auto removed = DeadlineTimer::now();
    QTRY_VERIFY(DeadlineTimer::now() - removed > std::chrono::milliseconds(100)); // much longer than a key takes
    mChannel->addNode(mFirst->open(), 2, true);
    const auto pressed = DeadlineTimer::now();
    mFirst->press(KEY_B);
    QTRY_COMPARE(mChannel->latency().count, quint64(1));
    const std::chrono::microseconds most = DeadlineTimer::now() - pressed;
    QVERIFY(mChannel->latency().maximumUs <= most.count());
}

void LinuxKeyChannelTest::removedNodeIsClosed()
{
    mChannel->addNode(mFirst->open(), 1, true);
    QVERIFY(mFirst->isOpen());
    mChannel->removeNode(7);
    QVERIFY(mFirst->isGrabbed());
    mChannel->removeNode(1);
    QVERIFY(!mFirst->isOpen());
}

QTEST_GUILESS_MAIN(LinuxKeyChannelTest)
#include "linuxkeychanneltest.moc"
