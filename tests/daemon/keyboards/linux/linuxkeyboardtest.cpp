// SPDX-License-Identifier: MIT
// Real keyboards on their own thread, while the daemon's thread makes every possible change. ThreadSanitizer runs over
// this test.
#include "daemon/keyboards/linux/linuxkeyboard.h"

#include "daemon/keyboards/currentkeyboard.h"
#include "tests/daemon/keyboards/keydocuments.h"
#include "tests/daemon/keyboards/linux/fakeeventfile.h"
#include "tests/daemon/keyboards/linux/outputpipe.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <memory>
#include <set>

using namespace Qt::StringLiterals;
using namespace KeyDocuments;

namespace {

// HID usages 4 to 6, 58 and 224 are the first five. The release chord is not among them.
constexpr std::array<quint16, 7> codes{KEY_A, KEY_B, KEY_C, KEY_F1, KEY_LEFTCTRL, KEY_MACRO_RECORD_START, KEY_MUTE};
constexpr std::size_t nodeCount = 3;

/// Two profiles, in which keys send others, play a macro and switch to the other profile.
QVariantMap randomDocument(QRandomGenerator &random)
{
    QVariantList profiles;
    for (const int other : {1, 0}) {
        const QVariantMap keys{{u"4"_s, entry(sendsKey, random.bounded(4, 30), random.bounded(256))},
                               {u"5"_s, entry(playsMacro, 0, random.bounded(253, 256))},
                               {u"58"_s, entry(switchesProfile, other)}};
        profiles += profile(u"Profile %1"_s.arg(other), keys);
    }
    return document(profiles, {macro(20, 0)}, random.bounded(2));
}

void releaseKeys(FakeNode &node)
{
    for (const quint16 code : codes)
        node.release(code);
}

/// The keys that are down at the computer, according to its end of the output device.
class Computer
{
public:
    explicit Computer(OutputPipe &pipe) : mPipe(pipe) {}

    /// Reads what has arrived. False: a key went down or up twice.
    [[nodiscard]] bool readAll()
    {
        const QStringList &lines = mPipe.read();
        for (; mRead < lines.size(); ++mRead) {
            const QStringList words = lines.at(mRead).split(u' ');
            if (words.last() == "down"_L1)
                mMakesSense = mDown.insert(words.first()).second && mMakesSense;
            else if (words.last() == "up"_L1)
                mMakesSense = mDown.erase(words.first()) == 1 && mMakesSense;
        }
        return mMakesSense;
    }
    [[nodiscard]] bool isAllUp() { return readAll() && mDown.empty(); }
    [[nodiscard]] qsizetype eventCount() const { return mRead; }

private:
    OutputPipe &mPipe;
    qsizetype mRead = 0;
    std::set<QString> mDown;
    bool mMakesSense = true;
};

} // namespace

class LinuxKeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stormWithEveryChangeLeavesNoKeyDown_data();
    void stormWithEveryChangeLeavesNoKeyDown();

private:
    /// One change by the daemon, its clients, the desktop or the user's hand, while the key thread has other work.
    void changeSomething(QRandomGenerator &random);
    void plugOrUnplug(std::size_t node);

    OutputPipe *mPipe = nullptr;
    LinuxKeyboard *mKeyboard = nullptr;
    CurrentKeyboard *mCurrent = nullptr;
    std::array<std::unique_ptr<FakeNode>, nodeCount> mNodes;
    std::array<int, nodeCount> mIds{}; // of the nodes in use; 0: not in use
    int mLastId = 0;
};

void LinuxKeyboardTest::plugOrUnplug(std::size_t node)
{
    if (const int id = std::exchange(mIds[node], 0)) {
        mKeyboard->removeNode(id);
        return;
    }
    releaseKeys(*mNodes[node]); // otherwise the daemon would wait for that
    mIds[node] = ++mLastId;
    mKeyboard->addNode(mNodes[node]->open(), mLastId, true);
}

void LinuxKeyboardTest::changeSomething(QRandomGenerator &random)
{
    const KeyThread &thread = *mKeyboard->keyThread();
    switch (random.bounded(9)) {
    case 0:
    case 1: plugOrUnplug(random.bounded(quint32(nodeCount))); break;
    case 2: mCurrent->apply(randomDocument(random), random.bounded(2) == 0); break;
    case 3: mCurrent->listen({.isCapturing = random.bounded(3) == 0, .isReporting = true}, QString()); break;
    case 4: mCurrent->setTapped(random.bounded(2) == 0); break;
    case 5:
        while (mCurrent->takeTapped()) {
        }
        break;
    case 6:
        QVERIFY(thread.channel().latency().maximumUs >= thread.channel().latency().p50Us
                || thread.channel().latency().count == 0);
        mNodes[random.bounded(quint32(nodeCount))]->dropEvents();
        break;
    case 7: mPipe->switchLed(LED_CAPSL, random.bounded(2) == 0); break;
    default: QCoreApplication::processEvents();
    }
}

void LinuxKeyboardTest::stormWithEveryChangeLeavesNoKeyDown_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U})
        QTest::addRow("%u", seed) << seed;
}

void LinuxKeyboardTest::stormWithEveryChangeLeavesNoKeyDown()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    OutputPipe pipe;
    mPipe = &pipe;
    Computer computer(pipe);
    for (auto &node : mNodes)
        node = std::make_unique<FakeNode>();
    mIds = {};
    auto keyboard = std::make_unique<LinuxKeyboard>();
    mKeyboard = keyboard.get();
    int grabbed = 0, lost = 0, reported = 0, macroKeys = 0;
    connect(mKeyboard, &LinuxKeyboard::nodeChanged, this,
            [&grabbed](int, EventDevice::State state) { grabbed += state == EventDevice::State::grabbed; });
    mKeyboard->start(pipe.device());
    auto current = std::make_unique<CurrentKeyboard>();
    mCurrent = current.get();
    connect(mCurrent, &CurrentKeyboard::keyReported, this, [&reported] { ++reported; });
    connect(mCurrent, &CurrentKeyboard::macroKeyPressed, this, [&macroKeys] { ++macroKeys; });
    mCurrent->use(*mKeyboard, randomDocument(random));
    mKeyboard->setNodes({u"/dev/input/event1"_s}, 0x0100); // attached, so its Macro key acts

    const auto areNodesRead = [this] {
        return std::ranges::all_of(mNodes, [](const auto &node) { return !node->isGrabbed() || node->unread() == 0; });
    };
    for (int step = 0; step < 500; ++step) {
        if (step % 20 == 0) // on a busy machine, the storm could be over before the key thread has begun
            QTRY_VERIFY(areNodesRead());
        for (int count = random.bounded(12); count > 0; --count) {
            FakeNode &node = *mNodes[random.bounded(quint32(nodeCount))];
            const quint16 code = codes[random.bounded(quint32(codes.size()))];
            random.bounded(2) == 0 ? node.press(code) : node.release(code);
        }
        changeSomething(random); // the key thread reads the keys meanwhile
        QVERIFY(computer.readAll());
        lost = std::max(lost, int(mKeyboard->keyThread()->channel().lostEvents()));
    }
    for (const auto &node : mNodes)
        releaseKeys(*node);
    mCurrent->listen({}, QString());
    QTRY_VERIFY(areNodesRead());
    for (std::size_t node = 0; node < nodeCount; ++node)
        QTRY_VERIFY(mIds[node] != 0 || !mNodes[node]->isOpen());
    mCurrent->stop();
    current.reset();
    keyboard.reset(); // ends the thread
    QVERIFY(computer.isAllUp());
    QVERIFY(std::ranges::none_of(mNodes, [](const auto &node) { return node->isOpen(); }));
    QVERIFY(computer.eventCount() > 100);
    QVERIFY(grabbed > 0 && lost > 0 && reported > 0 && macroKeys > 0);
}

QTEST_GUILESS_MAIN(LinuxKeyboardTest)
#include "linuxkeyboardtest.moc"
