// SPDX-License-Identifier: MIT
// An ordinary key allocates nothing on its way from the channel and back, nor from an event device to the output
// device. It also locks nothing there. The test counts every allocation of the process, and every lock of the C
// library. It cannot count a QMutex: the lock of a free one is inline code.
#include "daemon/keyboards/keypath.h"
#include "daemon/keyboards/linux/keythread.h"
#include "daemon/system/deadlinetimer.h"
#include "daemon/system/handover.h"
#include "tests/daemon/keyboards/keydocuments.h"
#include "tests/support/notingchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <array>
#include <atomic>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace KeyDocuments;

// The sanitizers have their own allocators, which cannot be counted.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KESTRA_COUNTS_ALLOCATIONS 0
#else
#define KESTRA_COUNTS_ALLOCATIONS 1
#endif

namespace {

std::atomic<int> allocations = 0;
std::atomic<int> locks = 0;

} // namespace

// Qt's containers allocate by malloc and realloc, operator new by malloc; glibc lets a program wrap them.
#if KESTRA_COUNTS_ALLOCATIONS
extern "C" void *__libc_malloc(std::size_t size);
extern "C" void *__libc_calloc(std::size_t count, std::size_t size);
extern "C" void *__libc_realloc(void *block, std::size_t size);
extern "C" void *malloc(std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}
extern "C" void *calloc(std::size_t count, std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, size);
}
extern "C" void *realloc(void *block, std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(block, size);
}
extern "C" int pthread_mutex_lock(pthread_mutex_t *mutex) noexcept
{
    using Lock = int (*)(pthread_mutex_t *);
    static std::atomic<Lock> library = nullptr;
    if (!library)
        library = reinterpret_cast<Lock>(::dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    locks.fetch_add(1, std::memory_order_relaxed);
    return library.load()(mutex);
}
#endif

namespace {

constexpr quint16 mappedKey = 5; // sends a key with all modifiers
constexpr quint16 switchKey = 58;
constexpr quint16 firstMacroKey = 60; // this and the next; until released
constexpr int macroCount = 5;
constexpr int rounds = 500;

QVariantMap fullDocument()
{
    QVariantMap keys{{u"5"_s, entry(sendsKey, 6, 255)}};
    QVariantList macros;
    for (int index = 0; index < macroCount; ++index) {
        macros += macro(20 + static_cast<uint>(index), 1 + index);
        keys.insert(QString::number(firstMacroKey + index), entry(playsMacro, index, 255));
    }
    QVariantMap first = keys;
    first.insert(u"58"_s, entry(switchesProfile, 1));
    keys.insert(u"58"_s, entry(switchesProfile, 0));
    return document({profile(u"A"_s, first), profile(u"B"_s, keys)}, macros);
}

/// An event device that is a pipe.
class PipeFile : public EventFile
{
public:
    explicit PipeFile(int descriptor) : mDescriptor(descriptor), mBuffer(descriptor) {}

    [[nodiscard]] int descriptor() const override { return mDescriptor; }
    [[nodiscard]] ReadResult read(KeyTranslator::Event &event) override
    {
        input_event read{};
        if (mBuffer.next(read) != EventBuffer::Result::event)
            return ReadResult::nothing;
        event = {.type = read.type, .code = read.code, .value = read.value, .time = DeadlineTimer::now()};
        return ReadResult::event;
    }
    [[nodiscard]] int setGrabbed(bool) override { return 0; }
    [[nodiscard]] Keys keysDown() override { return {}; }
    void inject(quint16, bool) override {}
    void setLed(quint16, bool) override {}

private:
    int mDescriptor;
    EventBuffer mBuffer;
};

input_event inputEvent(quint16 type, quint16 code, int value)
{
    input_event event{};
    event.type = type;
    event.code = code;
    event.value = value;
    return event;
}

/// Waits for a report of the output device with a single key, which is down or up.
bool takesReport(int output, bool isDown)
{
    std::array<input_event, 2> events{};
    std::size_t size = 0;
    while (size < sizeof events) {
        pollfd poll{.fd = output, .events = POLLIN, .revents = 0};
        if (::poll(&poll, 1, 10'000) != 1)
            return false;
        const ssize_t read = ::read(output, reinterpret_cast<char *>(events.data()) + size, sizeof events - size);
        if (read <= 0)
            return false;
        size += static_cast<std::size_t>(read);
    }
    return events[0].type == EV_KEY && events[0].value == (isDown ? 1 : 0) && events[1].type == EV_SYN;
}

} // namespace

class KeyPathAllocationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void allocationsAreCounted();
    void pressAndReleaseAllocateNothing_data();
    void pressAndReleaseAllocateNothing();
    void manyKeysAtOnceAllocateNothing();
    void macroEventsAllocateNothing();
    void tapAllocatesNothing();
    void realKeyboardAllocatesAndLocksNothing();

private:
    void change(quint16 key, bool isDown)
    {
        const HidUsage usage{HidUsage::keyboardPage, key};
        mChannel.keyChanged(usage, isDown, mNow, usage);
    }

    NotingChannel mChannel;
    KeyPath::Time mNow{};
    std::optional<KeyPath::Time> mWakeTime;
    KeyPath mPath{mChannel, KeyClock{.now = [this] { return mNow; },
                                     .wakeAt = [this](std::optional<KeyPath::Time> time) { mWakeTime = time; }}};
};

void KeyPathAllocationTest::initTestCase()
{
#if !KESTRA_COUNTS_ALLOCATIONS
    QSKIP("a sanitizer has the allocator");
#endif
    KeySettings settings = keySettingsOf(fullDocument());
    (void)mPath.start(settings);
}

void KeyPathAllocationTest::allocationsAreCounted()
{
    const int before = allocations;
    const auto number = std::make_unique<int>(1);
    QList<int> list{*number};
    list.reserve(100);
    QVERIFY(allocations - before >= 3);
    const int locksBefore = locks;
    std::mutex mutex;
    const std::lock_guard lock(mutex);
    QCOMPARE(locks - locksBefore, 1);
}

void KeyPathAllocationTest::pressAndReleaseAllocateNothing_data()
{
    QTest::addColumn<quint16>("key");
    QTest::newRow("unmapped") << quint16(4);
    QTest::newRow("modifier") << quint16(225);
    QTest::newRow("mapped") << mappedKey;
    QTest::newRow("starts a macro") << firstMacroKey;
    QTest::newRow("switches the profile") << switchKey;
}

void KeyPathAllocationTest::pressAndReleaseAllocateNothing()
{
    QFETCH(quint16, key);
    const int before = allocations;
    for (int round = 0; round < rounds; ++round) {
        change(key, true);
        change(key, false);
    }
    QCOMPARE(allocations - before, 0);
    QCOMPARE(mChannel.downCount(), std::size_t(0));
}

void KeyPathAllocationTest::manyKeysAtOnceAllocateNothing()
{
    const int sentBefore = mChannel.sent();
    const int before = allocations;
    for (int round = 0; round < rounds; ++round) {
        for (quint16 key = 4; key < 30; ++key)
            change(key, true);
        for (quint16 key = 4; key < 30; ++key)
            change(key, false);
    }
    QCOMPARE(allocations - before, 0);
    QVERIFY(mChannel.sent() - sentBefore > rounds * 50);
}

void KeyPathAllocationTest::macroEventsAllocateNothing()
{
    for (int index = 0; index < macroCount; ++index)
        change(static_cast<quint16>(firstMacroKey + index), true);
    const int sentBefore = mChannel.sent();
    const int before = allocations;
    for (int event = 0; event < rounds && mWakeTime; ++event) {
        mNow = *mWakeTime;
        mPath.wake();
    }
    QCOMPARE(allocations - before, 0);
    QVERIFY(mChannel.sent() - sentBefore >= rounds);
    for (int index = 0; index < macroCount; ++index)
        change(static_cast<quint16>(firstMacroKey + index), false);
    QCOMPARE(allocations - before, 0);
    QCOMPARE(mChannel.downCount(), std::size_t(0));
}

void KeyPathAllocationTest::tapAllocatesNothing()
{
    KeyTap &tap = mChannel.tap();
    tap.start();
    const int before = allocations;
    for (std::size_t round = 0; round < 2 * KeyTap::capacity; ++round) {
        tap.addKey(KeyTap::Side::keyboard, {HidUsage::keyboardPage, mappedKey}, true);
        tap.addEvent(KeyTap::Side::computer, 1, 30, 1);
    }
    QCOMPARE(allocations - before, 0);
    tap.stop();
}

void KeyPathAllocationTest::realKeyboardAllocatesAndLocksNothing()
{
    int keyboard[2] = {-1, -1};
    int output[2] = {-1, -1};
    QCOMPARE(::pipe2(keyboard, O_NONBLOCK | O_CLOEXEC), 0);
    QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, output), 0);
    auto thread = std::make_unique<KeyThread>();
    KeySettings settings = keySettingsOf(fullDocument());
    QMetaObject::invokeMethod(&thread->channel(), HandOver::Call{[&] {
        thread->channel().setOutput(OutputDevice::onFile(output[1]));
        thread->keys().start(settings);
        thread->channel().addNode(std::make_unique<PipeFile>(keyboard[0]), 1, true);
    }},
                              Qt::BlockingQueuedConnection);
    HandOver::take();
    bool hasCome = true;
    const auto change = [&](bool isDown) {
        const std::array report{inputEvent(EV_MSC, MSC_SCAN, 0x70004), inputEvent(EV_KEY, KEY_A, isDown ? 1 : 0),
                                inputEvent(EV_SYN, SYN_REPORT, 0)};
        hasCome = hasCome && ::write(keyboard[1], report.data(), sizeof report) == ssize_t(sizeof report)
                  && takesReport(output[0], isDown);
    };
    change(true);
    change(false); // everything has been called once
    const int allocationsBefore = allocations;
    const int locksBefore = locks;
    for (int round = 0; round < rounds; ++round) {
        change(true);
        change(false);
    }
    const int allocated = allocations - allocationsBefore;
    const int locked = locks - locksBefore;
    QVERIFY(hasCome);
    QCOMPARE(allocated, 0);
    QCOMPARE(locked, 0);
    thread.reset();
    for (const int file : {keyboard[0], keyboard[1], output[0]})
        ::close(file);
}

QTEST_GUILESS_MAIN(KeyPathAllocationTest)
#include "keypathallocationtest.moc"
