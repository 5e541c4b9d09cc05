// SPDX-License-Identifier: MIT
// Choosing keyboards on a simulated machine, with the real key thread.
#include "daemon/keyboards/linux/linuxdevices.h"
#include "daemon/settings/keysettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/handover.h"
#include "tests/daemon/keyboards/linux/fakeeventfile.h"
#include "tests/daemon/keyboards/linux/nodes.h"
#include "tests/daemon/keyboards/linux/outputpipe.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <map>
#include <memory>
#include <sched.h>

using namespace Qt::StringLiterals;

namespace {

/// Collects the messages of the log that name event device 1, during its lifetime.
class LogOfDevice1
{
public:
    LogOfDevice1()
    {
        lines.clear();
        mBefore = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
            if (message.contains("/dev/input/event1 "_L1) || message.contains("/dev/input/event1."_L1))
                lines += message;
        });
    }
    ~LogOfDevice1() { qInstallMessageHandler(mBefore); }
    LogOfDevice1(const LogOfDevice1 &) = delete;
    LogOfDevice1 &operator=(const LogOfDevice1 &) = delete;

    static inline QStringList lines;

private:
    QtMessageHandler mBefore;
};

/// A thread of this process; 0 if there is none.
pid_t threadNamed(const QByteArray &name)
{
    const QDir threads(u"/proc/self/task"_s);
    for (const QString &id : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(id + "/comm"_L1));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name)
            return id.toInt();
    }
    return 0;
}

const ChosenDevice chosen{.vendor = 0x1209, .product = 0xAB, .serial = {}, .path = {}};

constexpr std::chrono::milliseconds firstRetryPause(20);
constexpr std::chrono::milliseconds noPause(0);

} // namespace

class LinuxDevicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void grabsNothingWithoutAChoice();
    void usesExactlyTheDevicesOfTheChosenKeyboard();
    void idMayBeShortened();
    void unknownOrAmbiguousIdIsNotUsed();
    void missingRightsPreventUseAndNameTheRemedy();
    void missingOutputPreventsUseAndNamesTheRemedy();
    void rightsAreWatchedOnlyWhileOneIsMissing();
    void keyboardThatIsAlsoThePointerIsListedButNotUsed();
    void otherChoiceReleasesTheFirst();
    void usesAKeyboardBesideAnother();
    void keyboardNamedTwiceIsChosenOnce();
    void releasesOneOfSeveral();
    void releasesOnlyChosenKeyboards();
    void absentKeyboardCanBeReleased();
    void eachKeyboardHasItsState();
    void keyboardUsedAgainAfterTheReleaseChordLeavesTheOther();
    void keyboardPluggedInLaterIsUsed();
    void unpluggedKeyboardIsUsedAgainWhenItReturns();
    void anotherOfTheSameKindIsNotUsed();
    void keyboardWithoutANumberIsFoundAtAnotherPort();
    void chosenKeyboardThatAppearsLastIsUsed();
    void ofTwoAtOtherPortsNeitherIsUsed();
    void keyboardFoundElsewhereAfterTheStartDoesNotReplaceTheChosenOne();
    void keyboardFoundElsewhereTwiceDoesNotReplaceTheChosenOne();
    void keyboardFoundElsewhereCanBeReleasedOrChosen();
    void releaseUngrabsAndForgets();
    void keyboardsAreWantedBeforeTheyAreGrabbed();
    void releaseChordReleasesThemUntilTheyAreChosenOrPluggedInAgain();
    void deviceOfAnotherProgramIsReported();
    void missingRightIsLoggedOncePerChange();
    void deviceOfAnotherProgramIsLoggedOnce();
    void deviceThatAnotherProgramReleasesIsUsed();
    void pausesGrowWhileAnotherProgramHasTheDevice();
    void nothingWaitsForADeviceThatIsNotWanted_data();
    void nothingWaitsForADeviceThatIsNotWanted();
    void keysReachTheComputer();
    void realTimeIsThePolicyOfTheKeyThread();
    void reportsVersionAndAttachment();
    void givesKeyboardsUpWhileAnotherSessionIsActive();
    void waitsForTheLoginManager();
    void opensNothingBeforeASessionIsActive();
    void keyboardOfAnotherSeatIsNotUsed();

private:
    [[nodiscard]] FakeNode &fake(int number)
    {
        auto &place = mFakes[u"/dev/input/event%1"_s.arg(number)];
        if (!place)
            place = std::make_unique<FakeNode>();
        return *place;
    }
    /// The keyboard without a serial number as event device `number`, at "port<port>".
    [[nodiscard]] static EventDeviceInfo atPort(int port, int number)
    {
        EventDeviceInfo info = keyboardNode(number, u"/at%1"_s.arg(port));
        info.path = u"port%1"_s.arg(port);
        return info;
    }
    [[nodiscard]] static ChosenDevice chosenAt(int port)
    {
        ChosenDevice choice = chosen;
        choice.path = u"port%1"_s.arg(port);
        return choice;
    }
    /// The keys act from now on; nothing is assigned.
    void startKeys()
    {
        KeyPath *keys = &mKeyboard->keys();
        KeySettings settings = keySettingsOf(SettingsDocument::minimal(), {});
        QMetaObject::invokeMethod(keys, HandOver::Call{[keys, &settings] { keys->start(settings); }},
                                  Qt::BlockingQueuedConnection);
        HandOver::take();
    }

    std::map<QString, std::unique_ptr<FakeNode>> mFakes;
    std::map<QString, int> mErrors; // errno of opening, by node
    QString mOutputProblem;
    std::map<QString, SeatWatch::Presence> mPresence; // by seat; here unless listed
    int mOutputs = 0;                                 // how often the output device was requested
    std::unique_ptr<OutputPipe> mPipe;
    std::unique_ptr<FakeNodeSource> mSource;
    std::unique_ptr<LinuxKeyboard> mKeyboard;
    std::unique_ptr<LinuxDevices> mDevices;
};

void LinuxDevicesTest::init()
{
    mErrors.clear();
    mOutputProblem.clear();
    mPresence.clear();
    mOutputs = 0;
    mPipe = std::make_unique<OutputPipe>();
    mSource = std::make_unique<FakeNodeSource>();
    mKeyboard = std::make_unique<LinuxKeyboard>();
    const auto errorOf = [this](const QString &path) { return mErrors.contains(path) ? mErrors[path] : 0; };
    mDevices = std::make_unique<LinuxDevices>(
        *mSource, *mKeyboard,
        LinuxDevices::Services{
            .openNode = [this, errorOf](const QString &path) -> Result<std::unique_ptr<EventFile>, int> {
                if (const int error = mFakes.contains(path) ? errorOf(path) : ENOENT)
                    return error;
                return mFakes[path]->open();
            },
            .makeOutput = [this]() -> Result<std::unique_ptr<OutputDevice>> {
                ++mOutputs;
                if (!mOutputProblem.isEmpty())
                    return Error{mOutputProblem};
                return mPipe->device();
            },
            .access = errorOf,
            .presence =
                [this](const QString &seat) {
                    return mPresence.contains(seat) ? mPresence[seat] : SeatWatch::Presence::here;
                },
            .settlingTime = std::chrono::milliseconds(50),
            .firstRetryPause = firstRetryPause});
    for (int number = 1; number <= 4; ++number)
        (void)fake(number);
    EventDeviceInfo other = keyboardNode(3, u"/b"_s);
    other.vendor = 0x1234;
    mSource->set({keyboardNode(1, u"/a"_s), mediaNode(2, u"/a"_s), other});
}

void LinuxDevicesTest::cleanup()
{
    mDevices.reset();
    mKeyboard.reset();
    mFakes.clear();
    mSource.reset();
    mPipe.reset();
}

void LinuxDevicesTest::grabsNothingWithoutAChoice()
{
    QCOMPARE(mDevices->devices().size(), 2);
    QCOMPARE(mDevices->devices().first().id, u"1209:00ab"_s);
    QVERIFY(!mDevices->devices().first().isInUse);
    QCOMPARE(mDevices->status(), DeviceStatus());
    QVERIFY(!fake(1).isOpen());
    QVERIFY(!mKeyboard->keyThread()); // nor does it start a thread
}

void LinuxDevicesTest::usesExactlyTheDevicesOfTheChosenKeyboard()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs, (QStringList{u"/dev/input/event1"_s, u"/dev/input/event2"_s}));
    QVERIFY(fake(1).isGrabbed() && fake(2).isGrabbed());
    QVERIFY(!fake(3).isOpen());
    QCOMPARE(mDevices->status().state, DeviceState::inUse);
    QCOMPARE(mDevices->status().names, QStringList{u"Test board"_s});
    QVERIFY(mDevices->devices().first().isInUse);
    QCOMPARE(mDevices->choices(), (QList<ChosenDevice>{chosen}));
}

void LinuxDevicesTest::idMayBeShortened()
{
    EventDeviceInfo node = keyboardNode(1, u"/a"_s);
    node.serial = u"S1"_s;
    mSource->set({node});
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(fake(1).isGrabbed());
    QVERIFY(mDevices->use({u"/dev/input/event1"_s}));
    QVERIFY(mDevices->use({u"1209:00ab:S1"_s}));
    QCOMPARE(mDevices->choices().first().serial, u"S1"_s);
}

void LinuxDevicesTest::unknownOrAmbiguousIdIsNotUsed()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    const QList<ChosenDevice> before = mDevices->choices();
    const auto unknown = mDevices->use({u"1209:00ab"_s, u"dead:beef"_s});
    QVERIFY(!unknown);
    QCOMPARE(unknown.error().cause, UseError::Cause::unknown);
    EventDeviceInfo first = keyboardNode(1, u"/a"_s);
    EventDeviceInfo second = keyboardNode(4, u"/d"_s);
    first.serial = u"S1"_s;
    second.serial = u"S2"_s;
    mSource->set({first, second});
    const auto used = mDevices->use({u"1209:00ab"_s});
    QVERIFY(!used);
    QCOMPARE(used.error().cause, UseError::Cause::unknown);
    QVERIFY2(used.error().message.contains("several"_L1), qPrintable(used.error().message));
    QCOMPARE(mDevices->choices(), before);
}

void LinuxDevicesTest::missingRightsPreventUseAndNameTheRemedy()
{
    mErrors[u"/dev/input/event2"_s] = EACCES;
    const auto used = mDevices->use({u"1209:00ab"_s});
    QVERIFY(!used);
    QCOMPARE(used.error().cause, UseError::Cause::refused);
    QVERIFY2(used.error().message.contains("kestractl device rule 1209:00ab"_L1), qPrintable(used.error().message));
    QCOMPARE(mDevices->devices().first().problem, used.error().message);
    QCOMPARE(mDevices->devices().first().obstacle, DeviceObstacle::noRight);
    QCOMPARE(mDevices->devices().last().obstacle, DeviceObstacle::none);
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>());
    QVERIFY(!fake(1).isOpen());
}

void LinuxDevicesTest::missingOutputPreventsUseAndNamesTheRemedy()
{
    QSignalSpy wanted(mDevices.get(), &LinuxDevices::wanted);
    mOutputProblem = u"no uinput, do this"_s;
    const auto used = mDevices->use({u"1209:00ab"_s});
    QVERIFY(!used);
    QCOMPARE(used.error().cause, UseError::Cause::refused);
    QCOMPARE(used.error().message, mOutputProblem);
    mDevices->useWhenPresent({chosen});
    QCOMPARE(mDevices->status().state, DeviceState::failed);
    QCOMPARE(mDevices->status().problem, mOutputProblem);
    QVERIFY(!fake(1).isOpen());
    QCOMPARE(wanted.size(), 0); // the virtual keyboard remains in use
    QVERIFY(mSource->isWatchingRights);
    mOutputProblem.clear();
    mSource->set(mSource->nodes()); // after the next report of the system
    QTRY_VERIFY(fake(1).isGrabbed());
    QVERIFY(!mSource->isWatchingRights);
}

void LinuxDevicesTest::rightsAreWatchedOnlyWhileOneIsMissing()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(fake(1).isGrabbed());
    QVERIFY(!mSource->isWatchingRights); // a watch would delay every key
    mDevices->release();
    mErrors[u"/dev/input/event1"_s] = EACCES;
    mDevices->useWhenPresent({chosen});
    QVERIFY(mSource->isWatchingRights);
    mErrors.clear();
    mSource->set(mSource->nodes());
    QTRY_VERIFY(fake(1).isGrabbed());
    QVERIFY(!mSource->isWatchingRights);
    mErrors[u"/dev/input/event1"_s] = EACCES;
    mDevices->release();
    QVERIFY(!mSource->isWatchingRights); // no keyboard is chosen
}

void LinuxDevicesTest::keyboardThatIsAlsoThePointerIsListedButNotUsed()
{
    EventDeviceInfo mixed = keyboardNode(1, u"/a"_s);
    mixed.absoluteAxes.set(ABS_X).set(ABS_Y);
    mSource->set({mixed});
    const QString problem = mDevices->devices().first().problem;
    QVERIFY(problem.contains(u"pointer"_s));
    QCOMPARE(mDevices->devices().first().obstacle, DeviceObstacle::pointer);
    const auto used = mDevices->use({u"1209:00ab"_s});
    QVERIFY(!used);
    QCOMPARE(used.error().cause, UseError::Cause::refused);
    QCOMPARE(used.error().message, problem);
    // The choice was made when the keyboard had an event device for its keys alone.
    mDevices->useWhenPresent({chosen});
    QCOMPARE(mDevices->status().state, DeviceState::failed);
    QCOMPARE(mDevices->status().problem, problem);
    QVERIFY(!fake(1).isOpen());
}

void LinuxDevicesTest::otherChoiceReleasesTheFirst()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(fake(1).isGrabbed() && fake(2).isGrabbed());
    QVERIFY(mDevices->use({u"1234:00ab"_s}));
    QTRY_VERIFY(fake(3).isGrabbed());
    QTRY_VERIFY(!fake(1).isOpen() && !fake(2).isOpen());
}

void LinuxDevicesTest::usesAKeyboardBesideAnother()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    const Result<void, UseError> unknown = mDevices->useAlso({u"1234:00ab"_s, u"nine"_s});
    QVERIFY(!unknown);
    QCOMPARE(unknown.error().cause, UseError::Cause::unknown);
    QCOMPARE(mDevices->choices().size(), 1);
    QVERIFY(mDevices->useAlso({u"1234:00ab"_s}));
    QVERIFY(fake(1).isGrabbed()); // all the time
    QTRY_COMPARE(mDevices->status().grabs.size(), 3);
    QVERIFY(mDevices->useAlso({u"1234:00ab"_s}));
    QCOMPARE(mDevices->choices().size(), 2);
    QCOMPARE(mDevices->choices().last().vendor, quint16(0x1234));
    // Without a keyboard in use, it is the same as use().
    mDevices->release();
    QVERIFY(mDevices->useAlso({u"1234:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event3"_s});
}

void LinuxDevicesTest::keyboardNamedTwiceIsChosenOnce()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s, u"/dev/input/event1"_s, u"1209:00ab"_s}));
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>{chosen});
}

void LinuxDevicesTest::releasesOneOfSeveral()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s, u"1234:00ab"_s}));
    startKeys();
    QTRY_COMPARE(mDevices->status().grabs.size(), 3);
    fake(1).press(KEY_LEFTSHIFT);
    QTRY_COMPARE(mPipe->keys().size(), 1);
    fake(3).press(KEY_LEFTSHIFT);
    fake(3).press(KEY_B);
    QTRY_COMPARE(mPipe->keys().size(), 2);
    fake(1).press(KEY_A);
    QTRY_COMPARE(mPipe->keys(), (QStringList{u"42 down"_s, u"48 down"_s, u"30 down"_s}));
    QVERIFY(mDevices->releaseThese({u"1209:00ab"_s}));
    QTRY_VERIFY(!fake(1).isOpen() && !fake(2).isOpen());
    QCOMPARE(mPipe->keys().sliced(3), QStringList{u"30 up"_s}); // the other one still holds Shift
    QCOMPARE(mDevices->status().state, DeviceState::inUse);
    QCOMPARE(mDevices->choices().size(), 1);
    QVERIFY(mKeyboard->isAttached());
    fake(3).release(KEY_LEFTSHIFT);
    QTRY_COMPARE(mPipe->keys().last(), u"42 up"_s);
    QVERIFY(mDevices->releaseThese({u"1234:00ab"_s}));
    QTRY_COMPARE(mPipe->keys().last(), u"48 up"_s);
    QCOMPARE(mDevices->status().state, DeviceState::released);
    QVERIFY(!mKeyboard->isAttached());
}

void LinuxDevicesTest::releasesOnlyChosenKeyboards()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    for (const QString &id : {u"1234:00ab"_s, u"nine"_s}) {
        const Result<void, UseError> released = mDevices->releaseThese({u"1209:00ab"_s, id});
        QVERIFY(!released);
        QCOMPARE(released.error().cause, UseError::Cause::unknown);
        QVERIFY2(released.error().message.contains(id), qPrintable(released.error().message));
    }
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>{chosen});
    QVERIFY(fake(1).isGrabbed());
}

void LinuxDevicesTest::absentKeyboardCanBeReleased()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s, u"1234:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 3);
    QCOMPARE(mDevices->status().absent, QStringList());
    mSource->set({keyboardNode(1, u"/a"_s), mediaNode(2, u"/a"_s)});
    QCOMPARE(mDevices->status().absent, QStringList{u"1234:00ab"_s});
    QVERIFY(mDevices->releaseThese({u"1234:00ab"_s}));
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>{chosen});
    QCOMPARE(mDevices->status().absent, QStringList());
    QVERIFY(fake(1).isGrabbed());
}

void LinuxDevicesTest::eachKeyboardHasItsState()
{
    const auto states = [this] {
        QList<DeviceState> all;
        for (const InputDevice &device : mDevices->devices())
            all += device.state;
        return all;
    };
    QCOMPARE(states(), (QList{DeviceState::released, DeviceState::released}));
    fake(3).press(KEY_A);
    QVERIFY(mDevices->use({u"1209:00ab"_s, u"1234:00ab"_s}));
    QTRY_COMPARE(states(), (QList{DeviceState::inUse, DeviceState::waiting}));
    fake(3).release(KEY_A);
    QTRY_COMPARE(states(), (QList{DeviceState::inUse, DeviceState::inUse}));
    for (const quint16 code : {KEY_BACKSPACE, KEY_ESC, KEY_ENTER})
        fake(1).press(code);
    QTRY_COMPARE(states(), (QList{DeviceState::suspended, DeviceState::suspended}));
    for (const quint16 code : {KEY_BACKSPACE, KEY_ESC, KEY_ENTER})
        fake(1).release(code);
    mPresence[u"seat0"_s] = SeatWatch::Presence::elsewhere;
    QCOMPARE(states(), (QList{DeviceState::inactive, DeviceState::inactive}));
    mPresence.clear();
    fake(1).setGrabError(EBUSY);
    fake(2).setGrabError(EBUSY);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(states(), (QList{DeviceState::failed, DeviceState::released}));
}

void LinuxDevicesTest::keyboardUsedAgainAfterTheReleaseChordLeavesTheOther()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s, u"1234:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 3);
    for (const quint16 code : {KEY_BACKSPACE, KEY_ESC, KEY_ENTER})
        fake(1).press(code);
    QTRY_COMPARE(mDevices->status().state, DeviceState::suspended);
    QVERIFY(mDevices->useAlso({u"1234:00ab"_s}));
    QTRY_VERIFY(fake(3).isGrabbed());
    QVERIFY(!fake(1).isOpen());
    QCOMPARE(mDevices->choices().size(), 2);
    QVERIFY(mDevices->releaseThese({u"1234:00ab"_s}));
    QTRY_VERIFY(!fake(3).isOpen());
    QVERIFY(!fake(1).isOpen()); // still as the user left it
    QCOMPARE(mDevices->status().state, DeviceState::suspended);
}

void LinuxDevicesTest::keyboardPluggedInLaterIsUsed()
{
    const QList<EventDeviceInfo> nodes = mSource->nodes();
    mSource->set({});
    mDevices->useWhenPresent({chosen});
    QCOMPARE(mDevices->status().state, DeviceState::absent);
    mSource->set(nodes);
    QTRY_COMPARE(mDevices->status().state, DeviceState::inUse);
    QVERIFY(!fake(3).isOpen());
}

void LinuxDevicesTest::unpluggedKeyboardIsUsedAgainWhenItReturns()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    fake(1).unplug();
    fake(2).unplug();
    QTRY_COMPARE(mDevices->status().grabs, QStringList());
    mSource->set({});
    QCOMPARE(mDevices->status().state, DeviceState::absent);
    EventDeviceInfo again = keyboardNode(4, u"/a"_s);
    mSource->set({again});
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event4"_s});
}

void LinuxDevicesTest::anotherOfTheSameKindIsNotUsed()
{
    EventDeviceInfo first = keyboardNode(1, u"/a"_s);
    first.path = u"port1"_s;
    EventDeviceInfo second = keyboardNode(4, u"/d"_s);
    second.path = u"port2"_s;
    mSource->set({first, second});
    QVERIFY(mDevices->use({u"1209:00ab:port1"_s}));
    QTRY_VERIFY(fake(1).isGrabbed());
    fake(1).unplug();
    mSource->set({second});
    QTRY_COMPARE(mDevices->status().state, DeviceState::absent);
    QVERIFY(!fake(4).isOpen());
    // Nor when both are unplugged together, and this one comes back first.
    mSource->set({});
    mSource->set({second});
    QVERIFY(!mDevices->isSettling());
    QVERIFY(!fake(4).isOpen());
    QCOMPARE(mDevices->choices().first().path, u"port1"_s);
}

void LinuxDevicesTest::chosenKeyboardThatAppearsLastIsUsed()
{
    EventDeviceInfo second = keyboardNode(4, u"/d"_s);
    second.path = u"port2"_s;
    mSource->set({second});
    ChosenDevice choice = chosen;
    choice.path = u"port1"_s;
    mDevices->useWhenPresent({choice});
    QVERIFY(mDevices->isSettling());
    EventDeviceInfo first = keyboardNode(1, u"/a"_s);
    first.path = u"port1"_s;
    mSource->set({second, first});
    QVERIFY(!mDevices->isSettling());
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event1"_s});
    QVERIFY(!fake(4).isOpen());
}

void LinuxDevicesTest::keyboardWithoutANumberIsFoundAtAnotherPort()
{
    EventDeviceInfo first = keyboardNode(1, u"/a"_s);
    first.path = u"port1"_s;
    mSource->set({first});
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(fake(1).isGrabbed());
    QSignalSpy moved(mDevices.get(), &LinuxDevices::choiceMoved);
    fake(1).unplug();
    mSource->set({});
    QTRY_COMPARE(mDevices->status().state, DeviceState::absent);
    EventDeviceInfo again = keyboardNode(4, u"/d"_s);
    again.path = u"port2"_s;
    mSource->set({again});
    QTRY_VERIFY(fake(4).isGrabbed());
    QCOMPARE(moved.size(), 1);
    QCOMPARE(mDevices->choices().size(), 1);
    QCOMPARE(mDevices->choices().first().path, u"port2"_s);
    // A second one at the old port is another keyboard.
    EventDeviceInfo second = keyboardNode(3, u"/c"_s);
    second.path = u"port1"_s;
    mSource->set({again, second});
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event4"_s});
    QVERIFY(!fake(3).isOpen());
    QCOMPARE(moved.size(), 1);
}

void LinuxDevicesTest::ofTwoAtOtherPortsNeitherIsUsed()
{
    EventDeviceInfo first = keyboardNode(1, u"/a"_s);
    first.path = u"port2"_s;
    EventDeviceInfo second = keyboardNode(3, u"/c"_s);
    second.path = u"port3"_s;
    mSource->set({first, second});
    ChosenDevice choice = chosen;
    choice.path = u"port1"_s;
    mDevices->useWhenPresent({choice});
    QVERIFY(!mDevices->isSettling());
    QCOMPARE(mDevices->status().state, DeviceState::absent);
    QVERIFY(!fake(1).isOpen() && !fake(3).isOpen());
}

// The chosen one may have been moved while the computer was off, or be unplugged beside another of its make.
void LinuxDevicesTest::keyboardFoundElsewhereAfterTheStartDoesNotReplaceTheChosenOne()
{
    QSignalSpy moved(mDevices.get(), &LinuxDevices::choiceMoved);
    mSource->set({atPort(2, 4)});
    mDevices->useWhenPresent({chosenAt(1)});
    QTRY_VERIFY(fake(4).isGrabbed());
    QCOMPARE(mDevices->choices(), QList{chosenAt(1)});
    QCOMPARE(moved.size(), 0);
    mSource->set({atPort(2, 4), atPort(1, 1)});
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event1"_s});
    QTRY_VERIFY(!fake(4).isOpen());
    QCOMPARE(mDevices->choices(), QList{chosenAt(1)});
    // Now they are known to be two.
    fake(1).unplug();
    mSource->set({atPort(2, 4)});
    QVERIFY(!mDevices->isSettling());
    QVERIFY(!fake(4).isOpen());
    QCOMPARE(moved.size(), 0);
}

void LinuxDevicesTest::keyboardFoundElsewhereTwiceDoesNotReplaceTheChosenOne()
{
    QSignalSpy moved(mDevices.get(), &LinuxDevices::choiceMoved);
    mSource->set({atPort(2, 4)});
    mDevices->useWhenPresent({chosenAt(1)});
    QTRY_VERIFY(fake(4).isGrabbed());
    fake(4).unplug();
    mSource->set({});
    mSource->set({atPort(3, 3)});
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event3"_s});
    QCOMPARE(mDevices->choices(), QList{chosenAt(1)});
    QCOMPARE(moved.size(), 0);
    fake(3).unplug();
    mSource->set({});
    mSource->set({atPort(1, 1)});
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event1"_s});
    // The same keyboard was moved to the chosen port and away again.
    fake(1).unplug();
    mSource->set({});
    mSource->set({atPort(3, 2)});
    QTRY_COMPARE(mDevices->choices(), QList{chosenAt(3)});
}

void LinuxDevicesTest::keyboardFoundElsewhereCanBeReleasedOrChosen()
{
    mSource->set({atPort(2, 4)});
    mDevices->useWhenPresent({chosenAt(1)});
    QTRY_VERIFY(fake(4).isGrabbed());
    QVERIFY(mDevices->useAlso({u"1209:00ab:port2"_s}));
    QCOMPARE(mDevices->choices(), (QList{chosenAt(2), chosenAt(1)}));
    mSource->set({atPort(2, 4), atPort(1, 1)});
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);

    mSource->set({atPort(2, 4)});
    mDevices->useWhenPresent({chosenAt(1)});
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event4"_s});
    QVERIFY(mDevices->releaseThese({u"1209:00ab:port2"_s}));
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>());
    mSource->set({atPort(2, 4), atPort(1, 1)});
    QCOMPARE(mDevices->status().state, DeviceState::released);
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>());
}

void LinuxDevicesTest::releaseUngrabsAndForgets()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    mDevices->release();
    QTRY_VERIFY(!fake(1).isOpen() && !fake(2).isOpen());
    QCOMPARE(mDevices->status().state, DeviceState::released);
    QCOMPARE(mDevices->choices(), QList<ChosenDevice>());
    QVERIFY(!mKeyboard->isAttached());
}

void LinuxDevicesTest::keyboardsAreWantedBeforeTheyAreGrabbed()
{
    QList<bool> told;
    connect(mDevices.get(), &LinuxDevices::wanted, this, [&](bool isWanted) {
        told += isWanted;
        QVERIFY(!isWanted || !fake(1).isOpen());
        QVERIFY(mKeyboard->keyThread());
    });
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(fake(1).isGrabbed());
    QVERIFY(mDevices->use({u"1234:00ab"_s}));
    mDevices->release();
    mDevices->release();
    QCOMPARE(told, (QList<bool>{true, false}));
}

void LinuxDevicesTest::releaseChordReleasesThemUntilTheyAreChosenOrPluggedInAgain()
{
    QVERIFY(mDevices->use({u"1209:00ab"_s, u"1234:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 3);
    QSignalSpy releaseChordPressed(mDevices.get(), &LinuxDevices::releaseChordPressed);
    for (const quint16 code : {KEY_BACKSPACE, KEY_ESC, KEY_ENTER})
        fake(1).press(code);
    QTRY_COMPARE(releaseChordPressed.size(), 1);
    QTRY_VERIFY(!fake(1).isOpen() && !fake(2).isOpen() && !fake(3).isOpen());
    QCOMPARE(mDevices->status().state, DeviceState::suspended);
    QCOMPARE(mDevices->choices().size(), 2);
    mSource->set(mSource->nodes()); // the arrival of another keyboard changes nothing
    QCOMPARE(mDevices->status().state, DeviceState::suspended);
    EventDeviceInfo again = keyboardNode(4, u"/a"_s);
    mSource->set({again});
    QTRY_VERIFY(fake(4).isGrabbed());
}

void LinuxDevicesTest::deviceOfAnotherProgramIsReported()
{
    fake(1).setGrabError(EBUSY);
    fake(2).setGrabError(EBUSY);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().state, DeviceState::failed);
    QVERIFY2(mDevices->status().problem.contains("Another program"_L1), qPrintable(mDevices->status().problem));
    QCOMPARE(mDevices->devices().first().obstacle, DeviceObstacle::taken);
    QCOMPARE(mDevices->devices().first().problem, mDevices->status().problem);
    fake(1).setGrabError(0);
    fake(2).setGrabError(0);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().state, DeviceState::inUse);
    QCOMPARE(mDevices->status().problem, QString());
    QCOMPARE(mDevices->devices().first().obstacle, DeviceObstacle::none);
}

void LinuxDevicesTest::missingRightIsLoggedOncePerChange()
{
    const LogOfDevice1 log;
    mErrors[u"/dev/input/event1"_s] = EACCES;
    mDevices->useWhenPresent({chosen});
    QCOMPARE(log.lines.size(), 1);
    QVERIFY2(log.lines.first().contains("No right"_L1), qPrintable(log.lines.first()));
    for (int message = 0; message < 3; ++message)
        mSource->set(mSource->nodes());
    QCOMPARE(log.lines.size(), 1);
    mErrors[u"/dev/input/event1"_s] = ENODEV;
    mSource->set(mSource->nodes());
    QCOMPARE(log.lines.size(), 2);
    mErrors.clear();
    mSource->set(mSource->nodes());
    QTRY_VERIFY(log.lines.last().contains("grabbed"_L1));
    mErrors[u"/dev/input/event1"_s] = EACCES;
    fake(1).unplug();
    QTRY_COMPARE(mDevices->status().grabs, QStringList{u"/dev/input/event2"_s});
    const qsizetype before = log.lines.size();
    mSource->set(mSource->nodes());
    QCOMPARE(log.lines.size(), before + 1); // refused again
}

void LinuxDevicesTest::deviceOfAnotherProgramIsLoggedOnce()
{
    const LogOfDevice1 log;
    fake(1).setGrabError(EBUSY);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(!log.lines.filter(u"Another program"_s).isEmpty());
    const QStringList before = log.lines;
    QSignalSpy changed(mDevices.get(), &DeviceSource::changed);
    mSource->set(mSource->nodes());
    QTRY_VERIFY(changed.size() >= 2); // the second one is the result of another attempt
    QCOMPARE(log.lines, before);
}

// The daemon of another user still has it when the seat changes.
void LinuxDevicesTest::deviceThatAnotherProgramReleasesIsUsed()
{
    const LogOfDevice1 log;
    const auto attempts = std::make_shared<std::atomic<int>>(0);
    fake(1).setBeforeGrab([attempts] { ++*attempts; });
    fake(1).setGrabError(EBUSY);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(*attempts >= 3);
    QTRY_VERIFY(mDevices->status().problem.contains("Another program"_L1));
    QTRY_VERIFY(fake(2).isGrabbed());
    QCOMPARE(log.lines.filter(u"Another program"_s).size(), 1);
    fake(1).setGrabError(0);
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    QCOMPARE(mDevices->retryPause(), noPause);
    QCOMPARE(mDevices->status().problem, QString());
}

void LinuxDevicesTest::pausesGrowWhileAnotherProgramHasTheDevice()
{
    QList<std::chrono::milliseconds> pauses; // each once
    const QMetaObject::Connection connection = connect(mDevices.get(), &DeviceSource::changed, this, [&pauses, this] {
        const std::chrono::milliseconds pause = mDevices->retryPause();
        if (pause != noPause && (pauses.isEmpty() || pauses.last() != pause))
            pauses += pause;
    });
    const auto end = qScopeGuard([&connection] { disconnect(connection); });
    fake(1).setGrabError(EBUSY);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(pauses.size() >= 4);
    QCOMPARE(pauses.first(4), (QList{firstRetryPause, firstRetryPause * 2, firstRetryPause * 4, firstRetryPause * 8}));
    pauses.clear();
    mDevices->lookAgain(); // at a change of the seat
    QTRY_VERIFY(!pauses.isEmpty());
    QCOMPARE(pauses.first(), firstRetryPause);
}

void LinuxDevicesTest::nothingWaitsForADeviceThatIsNotWanted_data()
{
    QTest::addColumn<QString>("event");
    for (const QString &event : {u"released"_s, u"unplugged"_s, u"release chord"_s, u"another user"_s, u"no right"_s})
        QTest::newRow(qPrintable(event)) << event;
}

void LinuxDevicesTest::nothingWaitsForADeviceThatIsNotWanted()
{
    QFETCH(QString, event);
    fake(1).setGrabError(EBUSY);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(mDevices->retryPause() >= firstRetryPause * 4 && fake(2).isGrabbed());
    if (event == "released"_L1) {
        mDevices->release();
    } else if (event == "unplugged"_L1) {
        mSource->set({});
    } else if (event == "release chord"_L1) {
        Q_EMIT mKeyboard->releaseChordPressed();
    } else if (event == "another user"_L1) {
        mPresence[u"seat0"_s] = SeatWatch::Presence::elsewhere;
        mDevices->lookAgain();
    } else {
        mErrors[u"/dev/input/event1"_s] = EACCES; // which has a watch of its own
        mDevices->lookAgain();
    }
    QCOMPARE(mDevices->retryPause(), noPause);
}

void LinuxDevicesTest::keysReachTheComputer()
{
    connect(mDevices.get(), &LinuxDevices::wanted, this, [this](bool isWanted) {
        if (isWanted)
            startKeys();
    });
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(fake(1).isGrabbed() && fake(2).isGrabbed());
    fake(1).press(KEY_A, 0x70004);
    fake(2).press(KEY_PLAYPAUSE, 0xC00CD);
    QTRY_COMPARE(mPipe->keys().size(), 2);
    fake(1).unplug();
    QTRY_COMPARE(mPipe->keys().last(), u"30 up"_s);
    mKeyboard.reset(); // the daemon ends
    QCOMPARE(mPipe->keys().last(), u"164 up"_s);
    QVERIFY(!fake(2).isOpen());
    mDevices.reset();
}

void LinuxDevicesTest::realTimeIsThePolicyOfTheKeyThread()
{
    QSignalSpy known(mKeyboard.get(), &LinuxKeyboard::realTimeChanged);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_VERIFY(!known.isEmpty()); // the thread has requested its priority
    const pid_t thread = threadNamed("keys");
    QVERIFY(thread != 0);
    const sched_param ordinary = {};
    QCOMPARE(::sched_setscheduler(thread, SCHED_OTHER | SCHED_RESET_ON_FORK, &ordinary), 0);
    QVERIFY(!mKeyboard->keyThread()->isRealTime());
    QVERIFY(!mDevices->status().isRealTime);
    const sched_param lowest = {.sched_priority = 1};
    for (const int policy : {SCHED_FIFO, SCHED_RR}) {
        if (::sched_setscheduler(thread, policy | SCHED_RESET_ON_FORK, &lowest) != 0)
            QSKIP("the system does not allow real-time priority");
        QVERIFY(mKeyboard->keyThread()->isRealTime());
        QVERIFY(mDevices->status().isRealTime);
    }
    QCOMPARE(::sched_setscheduler(thread, SCHED_OTHER | SCHED_RESET_ON_FORK, &ordinary), 0); // as RealtimeKit does
    QVERIFY(!mKeyboard->keyThread()->isRealTime());
    QVERIFY(!mDevices->status().isRealTime);
}

void LinuxDevicesTest::reportsVersionAndAttachment()
{
    QSignalSpy attached(mKeyboard.get(), &Keyboard::attachedChanged);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    QCOMPARE(attached.size(), 1);
    QCOMPARE(mKeyboard->firmwareVersion(), u"1.23"_s);
    mDevices->release();
    QCOMPARE(attached.size(), 2);
    QVERIFY(!attached.last().first().toBool());
}

void LinuxDevicesTest::givesKeyboardsUpWhileAnotherSessionIsActive()
{
    connect(mDevices.get(), &LinuxDevices::wanted, this, &LinuxDevicesTest::startKeys);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().grabs.size(), 2);
    fake(1).press(KEY_A, 0x70004);
    QTRY_COMPARE(mPipe->keys().size(), 1);
    QSignalSpy attached(mKeyboard.get(), &Keyboard::attachedChanged);
    QSignalSpy changed(mDevices.get(), &DeviceSource::changed);
    mPresence[u"seat0"_s] = SeatWatch::Presence::elsewhere;
    mDevices->lookAgain();
    QTRY_VERIFY(!fake(1).isOpen() && !fake(2).isOpen());
    QTRY_COMPARE(mPipe->keys().last(), u"30 up"_s);
    QCOMPARE(attached.size(), 1);
    QVERIFY(!changed.isEmpty());
    QCOMPARE(mDevices->status().state, DeviceState::inactive);
    QVERIFY2(mDevices->status().problem.contains("seat0"_L1), qPrintable(mDevices->status().problem));
    QCOMPARE(mDevices->devices().first().obstacle, DeviceObstacle::elsewhere);
    QCOMPARE(mDevices->devices().first().problem, mDevices->status().problem);
    const auto used = mDevices->use({u"1209:00ab"_s});
    QVERIFY(!used);
    QCOMPARE(used.error().cause, UseError::Cause::refused);
    QCOMPARE(mDevices->choices(), (QList<ChosenDevice>{chosen}));
    mSource->set(mSource->nodes()); // a message of udev changes nothing
    QVERIFY(!fake(1).isOpen());
    mPresence[u"seat0"_s] = SeatWatch::Presence::here;
    mDevices->lookAgain();
    QTRY_COMPARE(mDevices->status().state, DeviceState::inUse);
    QVERIFY(fake(1).isGrabbed() && fake(2).isGrabbed());
    QCOMPARE(mDevices->status().problem, QString());
}

void LinuxDevicesTest::waitsForTheLoginManager()
{
    mPresence[u"seat0"_s] = SeatWatch::Presence::unknown;
    mDevices->useWhenPresent({chosen});
    QCOMPARE(mDevices->status().state, DeviceState::waiting);
    QCOMPARE(mDevices->devices().first().problem, QString());
    QVERIFY(!fake(1).isOpen());
    mPresence[u"seat0"_s] = SeatWatch::Presence::here;
    mDevices->lookAgain();
    QTRY_COMPARE(mDevices->status().state, DeviceState::inUse);
}

// Another user at the seat has all the rights, and the daemon would log that it lacks them.
void LinuxDevicesTest::opensNothingBeforeASessionIsActive()
{
    mPresence[u"seat0"_s] = SeatWatch::Presence::elsewhere;
    mDevices->useWhenPresent({chosen});
    QCOMPARE(mDevices->status().state, DeviceState::inactive);
    QCOMPARE(mOutputs, 0);
    QVERIFY(!fake(1).isOpen());
}

void LinuxDevicesTest::keyboardOfAnotherSeatIsNotUsed()
{
    QList<EventDeviceInfo> nodes = mSource->nodes();
    nodes[2].seat = u"seat1"_s;
    mSource->set(nodes);
    mPresence[u"seat1"_s] = SeatWatch::Presence::elsewhere;
    const auto used = mDevices->use({u"1234:00ab"_s});
    QVERIFY(!used);
    QCOMPARE(used.error().cause, UseError::Cause::refused);
    QVERIFY(mDevices->use({u"1209:00ab"_s}));
    QTRY_COMPARE(mDevices->status().state, DeviceState::inUse);
}

QTEST_GUILESS_MAIN(LinuxDevicesTest)
#include "linuxdevicestest.moc"
