// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventdevice.h"
#include "tests/daemon/keyboards/linux/fakeeventfile.h"
#include "tests/support/testmain.h"

#include <linux/input-event-codes.h>

#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using State = EventDevice::State;

namespace {

class Recorder : public EventDeviceHandler
{
public:
    void nodeEvent(EventDevice &node, const KeyTranslator::Event &event) override
    {
        ++eventsSinceRead;
        if (event.type == EV_KEY)
            keys += u"%1 %2"_s.arg(event.code).arg(event.value);
        if (event.type == EV_SW)
            keys += u"switch %1 %2"_s.arg(event.code).arg(event.value);
        if (ungrabsAtKey == event.code && event.type == EV_KEY)
            node.ungrab();
    }
    void nodeRead(EventDevice &) override
    {
        mostEvents = std::max(mostEvents, eventsSinceRead);
        eventsSinceRead = 0;
    }
    void nodeDroppedEvents(EventDevice &) override { ++drops; }
    void nodeStateChanged(EventDevice &node) override { states += node.state(); }

    QStringList keys;
    QList<State> states;
    int ungrabsAtKey = -1;
    int drops = 0;
    int eventsSinceRead = 0;
    int mostEvents = 0;
};

} // namespace

class EventDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        mFake = std::make_unique<FakeNode>();
        mRecorder = std::make_unique<Recorder>();
    }
    void cleanup()
    {
        mNode.reset();
        mRecorder.reset();
        mFake.reset();
    }

    void grabsAtOnceWhenNoKeyIsDown();
    void waitsUntilNoKeyIsDown();
    void ignoresEventsBeforeTheGrab();
    void grabsDespiteAHeldKey();
    void grabsAKeyboardThatReportsEveryKeyDown();
    void stopsWaitingWhenReleased();
    void grabWaitsForAKeyPressedJustBefore();
    void keyPressedAndReleasedAroundTheGrabComesUpOnTheDesktop();
    void keyPressedBeforeEachAttemptDoesNotDelayTheGrab();
    void failsWhenAnotherProgramHasTheGrab_data();
    void failsWhenAnotherProgramHasTheGrab();
    void handlesUnpluggingBeforeTheGrab();
    void handlesUnpluggingInTheMiddle();
    void ungrabsWithEveryKeyUp();
    void ungrabWithinAnEventEndsTheReports();
    void switchThatIsOnMovesToTheReceiver();
    void switchStaysWithTheDesktopWhenAnotherProgramHasTheGrab();
    void reportsDroppedEvents();
    void floodDoesNotBlockAnotherDevice();
    void switchesOnlyItsOwnLeds();

private:
    void make(std::chrono::milliseconds patience = EventDevice::usualPatience)
    {
        mNode = std::make_unique<EventDevice>(mFake->open(), 1, true, *mRecorder, patience);
    }

    std::unique_ptr<FakeNode> mFake;
    std::unique_ptr<Recorder> mRecorder;
    std::unique_ptr<EventDevice> mNode;
};

void EventDeviceTest::grabsAtOnceWhenNoKeyIsDown()
{
    make();
    QVERIFY(!mFake->isGrabbed());
    mNode->start();
    QVERIFY(mFake->isGrabbed());
    QCOMPARE(mRecorder->states, QList{State::grabbed});
    mFake->press(KEY_A);
    QTRY_COMPARE(mRecorder->keys, QStringList{u"30 1"_s});
    QCOMPARE(mFake->seenByDesktop(), QStringList());
}

void EventDeviceTest::waitsUntilNoKeyIsDown()
{
    mFake->press(KEY_ENTER); // has sent the command to use the keyboard
    mFake->press(KEY_LEFTSHIFT);
    make();
    mNode->start();
    QCOMPARE(mNode->state(), State::waiting);
    mFake->release(KEY_ENTER);
    QTRY_COMPARE(mFake->unread(), 0);
    QCOMPARE(mNode->state(), State::waiting);
    mFake->release(KEY_LEFTSHIFT);
    QTRY_COMPARE(mNode->state(), State::grabbed);
    QCOMPARE(mFake->seenByDesktop(), (QStringList{u"28 down"_s, u"42 down"_s, u"28 up"_s, u"42 up"_s}));
    QCOMPARE(mRecorder->keys, QStringList());
}

void EventDeviceTest::ignoresEventsBeforeTheGrab()
{
    make();
    mFake->press(KEY_A);
    mFake->release(KEY_A);
    mNode->start();
    mFake->press(KEY_B);
    QTRY_COMPARE(mRecorder->keys, QStringList{u"48 1"_s});
}

void EventDeviceTest::grabsDespiteAHeldKey()
{
    mFake->press(KEY_A);
    make(20ms);
    mNode->start();
    QCOMPARE(mNode->state(), State::waiting);
    QTRY_COMPARE(mNode->state(), State::grabbed);
    QCOMPARE(mFake->seenByDesktop(), (QStringList{u"30 down"_s, u"30 up"_s}));
    QTRY_COMPARE(mRecorder->keys, QStringList{u"30 1"_s});
    mFake->release(KEY_A);
    QTRY_COMPARE(mRecorder->keys, (QStringList{u"30 1"_s, u"30 0"_s}));
    QCOMPARE(mFake->seenByDesktop().size(), 2);
}

void EventDeviceTest::grabsAKeyboardThatReportsEveryKeyDown()
{
    for (quint16 code = 1; code < KEY_CNT; ++code)
        mFake->press(code);
    make(20ms);
    mNode->start();
    QTRY_COMPARE(mNode->state(), State::grabbed);
    QTRY_COMPARE(mRecorder->keys.size(), KEY_CNT - 1);
    QCOMPARE(mFake->seenByDesktop().size(), 2 * (KEY_CNT - 1));
}

void EventDeviceTest::stopsWaitingWhenReleased()
{
    mFake->press(KEY_A);
    make(1ms);
    mNode->start();
    mNode->ungrab();
    QCOMPARE(mRecorder->states, QList{State::ungrabbed});
    QTest::qWait(20); // nothing must happen, and no event could end a wait
    QCOMPARE(mRecorder->states, QList{State::ungrabbed});
    QVERIFY(!mFake->isGrabbed());
    QCOMPARE(mFake->seenByDesktop(), QStringList{u"30 down"_s});
}

void EventDeviceTest::grabWaitsForAKeyPressedJustBefore()
{
    make();
    mFake->setBeforeGrab([this] {
        mFake->setBeforeGrab({});
        mFake->press(KEY_A);
    });
    mNode->start();
    QCOMPARE(mNode->state(), State::waiting);
    QVERIFY(!mFake->isGrabbed());
    mFake->release(KEY_A);
    QTRY_COMPARE(mNode->state(), State::grabbed);
    QCOMPARE(mFake->seenByDesktop(), (QStringList{u"30 down"_s, u"30 up"_s}));
    QCOMPARE(mRecorder->keys, QStringList());
}

void EventDeviceTest::keyPressedAndReleasedAroundTheGrabComesUpOnTheDesktop()
{
    // The release of the key goes to the daemon alone, during the moment in which the daemon has the keyboard.
    class Releasing : public EventFile
    {
    public:
        explicit Releasing(FakeNode &node) : mNode(node), mFile(node.open()) {}
        int descriptor() const override { return mFile->descriptor(); }
        ReadResult read(KeyTranslator::Event &event) override { return mFile->read(event); }
        int setGrabbed(bool isGrabbed) override
        {
            if (!isGrabbed)
                mNode.release(KEY_A);
            return mFile->setGrabbed(isGrabbed);
        }
        Keys keysDown() override { return mFile->keysDown(); }
        void inject(quint16 code, bool isDown) override { mFile->inject(code, isDown); }
        void setLed(quint16, bool) override {}

    private:
        FakeNode &mNode;
        std::unique_ptr<EventFile> mFile;
    };
    mFake->setBeforeGrab([this] {
        mFake->setBeforeGrab({});
        mFake->press(KEY_A);
    });
    mNode = std::make_unique<EventDevice>(std::make_unique<Releasing>(*mFake), 1, true, *mRecorder);
    mNode->start();
    QCOMPARE(mFake->seenByDesktop().last(), u"30 up"_s);
    QTRY_COMPARE(mNode->state(), State::grabbed);
}

void EventDeviceTest::keyPressedBeforeEachAttemptDoesNotDelayTheGrab()
{
    mFake->press(KEY_A);
    quint16 code = KEY_B;
    make(5ms);
    mFake->setBeforeGrab([&] { mFake->press(code++); });
    mNode->start();
    QTRY_COMPARE(mNode->state(), State::grabbed);
    QVERIFY(mFake->isGrabbed());
}

void EventDeviceTest::failsWhenAnotherProgramHasTheGrab_data()
{
    QTest::addColumn<bool>("isHeld");
    QTest::newRow("at once") << false;
    QTest::newRow("after the wait") << true;
}

void EventDeviceTest::failsWhenAnotherProgramHasTheGrab()
{
    QFETCH(bool, isHeld);
    if (isHeld)
        mFake->press(KEY_A);
    mFake->setGrabError(EBUSY);
    make(5ms);
    mNode->start();
    QTRY_COMPARE(mNode->state(), State::refused);
    QCOMPARE(mNode->error(), EBUSY);
    QCOMPARE(mRecorder->states, QList{State::refused});
}

void EventDeviceTest::handlesUnpluggingBeforeTheGrab()
{
    mFake->unplug();
    make();
    mNode->start();
    QCOMPARE(mRecorder->states, QList{State::gone});
}

void EventDeviceTest::handlesUnpluggingInTheMiddle()
{
    make();
    mNode->start();
    mFake->press(KEY_A);
    mFake->unplug();
    QTRY_COMPARE(mNode->state(), State::gone);
    QCOMPARE(mRecorder->keys, QStringList{u"30 1"_s});
    QCOMPARE(mRecorder->states, (QList{State::grabbed, State::gone}));
    mNode->ungrab();
    QCOMPARE(mRecorder->states.size(), 2);
}

void EventDeviceTest::ungrabsWithEveryKeyUp()
{
    make();
    mNode->start();
    mFake->press(KEY_A);
    QTRY_COMPARE(mRecorder->keys.size(), 1);
    mNode->ungrab();
    QVERIFY(!mFake->isGrabbed());
    mFake->release(KEY_A); // the desktop has not seen it go down
    QCOMPARE(mFake->seenByDesktop(), QStringList());
    mFake->press(KEY_B);
    QCOMPARE(mFake->seenByDesktop(), QStringList{u"48 down"_s});
}

void EventDeviceTest::ungrabWithinAnEventEndsTheReports()
{
    make();
    mNode->start();
    mRecorder->ungrabsAtKey = KEY_B;
    for (const quint16 code : {KEY_A, KEY_B, KEY_C})
        mFake->press(code);
    QTRY_COMPARE(mNode->state(), State::ungrabbed);
    QCOMPARE(mRecorder->keys, (QStringList{u"30 1"_s, u"48 1"_s}));
}

void EventDeviceTest::switchThatIsOnMovesToTheReceiver()
{
    mFake->setSwitch(SW_MUTE_DEVICE, true);
    make();
    mNode->start();
    QCOMPARE(mNode->state(), State::grabbed); // a switch may stay on for ever
    QTRY_COMPARE(mRecorder->keys.value(mRecorder->keys.size() - 1), u"switch 14 1"_s);
    const QStringList moved{u"switch 14 on"_s, u"switch 14 off"_s};
    QCOMPARE(mFake->seenByDesktop(), moved);
    mFake->setSwitch(SW_DOCK, true);
    QTRY_COMPARE(mRecorder->keys.last(), u"switch 5 1"_s);
    QCOMPARE(mFake->seenByDesktop(), moved);
    mNode->ungrab();
    QCOMPARE(mFake->seenByDesktop(), moved + QStringList({u"switch 5 on"_s, u"switch 14 on"_s}));
}

void EventDeviceTest::switchStaysWithTheDesktopWhenAnotherProgramHasTheGrab()
{
    mFake->setSwitch(SW_MUTE_DEVICE, true);
    mFake->setGrabError(EBUSY);
    make();
    mNode->start();
    QCOMPARE(mNode->state(), State::refused);
    QCOMPARE(mFake->seenByDesktop().last(), u"switch 14 on"_s);
}

void EventDeviceTest::reportsDroppedEvents()
{
    make();
    mNode->start();
    mFake->dropEvents();
    QTRY_COMPARE(mRecorder->drops, 1);
    mFake->press(KEY_A);
    QTRY_COMPARE(mRecorder->keys.size(), 1);
}

void EventDeviceTest::floodDoesNotBlockAnotherDevice()
{
    FakeNode quiet;
    Recorder quietRecorder;
    EventDevice quietNode(quiet.open(), 2, true, quietRecorder);
    quietNode.start();
    make();
    mNode->start();
    constexpr int reports = 5000;
    for (int report = 0; report < reports; ++report)
        mFake->repeat(KEY_A);
    quiet.press(KEY_B);
    QTRY_COMPARE(quietRecorder.keys.size(), 1);
    QVERIFY2(mRecorder->keys.size() < reports / 2, qPrintable(QString::number(mRecorder->keys.size())));
    QTRY_COMPARE(mRecorder->keys.size(), reports); // none is lost
    QCOMPARE(mRecorder->mostEvents, EventDevice::eventsAtOnce);
}

void EventDeviceTest::switchesOnlyItsOwnLeds()
{
    mFake->press(KEY_A);
    make();
    mNode->start();
    mNode->setLed(LED_CAPSL, true);
    QCOMPARE(mFake->leds(), QStringList());
    mFake->release(KEY_A);
    QTRY_COMPARE(mNode->state(), State::grabbed);
    mNode->setLed(LED_CAPSL, true);
    QCOMPARE(mFake->leds(), QStringList{u"1 on"_s});
}

QTEST_GUILESS_MAIN(EventDeviceTest)
#include "eventdevicetest.moc"
