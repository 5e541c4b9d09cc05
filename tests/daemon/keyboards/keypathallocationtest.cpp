// SPDX-License-Identifier: MIT
// An ordinary key allocates nothing on its way from the channel and back. The test counts every allocation of the
// process.
#include "daemon/keyboards/keypath.h"
#include "tests/daemon/keyboards/keydocuments.h"
#include "tests/support/notingchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <atomic>

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

QTEST_GUILESS_MAIN(KeyPathAllocationTest)
#include "keypathallocationtest.moc"
