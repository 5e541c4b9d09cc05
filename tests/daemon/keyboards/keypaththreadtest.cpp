// SPDX-License-Identifier: MIT
// Keys on their own thread, while the daemon's thread makes every possible change. ThreadSanitizer runs over this test.
#include "base/document.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "tests/daemon/keyboards/keydocuments.h"
#include "tests/support/testmain.h"
#include "tests/support/threadedkeyboard.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace KeyDocuments;

namespace {

constexpr std::array<quint16, 8> keys{4, 5, 6, 58, 59, 60, 225, 227};

/// Assigns random actions to the keys above.
QVariantMap randomProfile(QRandomGenerator &random, const QString &name)
{
    QVariantMap mappings;
    for (const quint16 key : keys) {
        const QString code = QString::number(key);
        switch (random.bounded(6)) {
        case 0: mappings.insert(code, entry(sendsKey, random.bounded(4, 8), random.bounded(256))); break;
        case 1: mappings.insert(code, entry(switchesProfile, random.bounded(4))); break; // the last does not exist
        case 2: mappings.insert(code, entry(playsMacro, random.bounded(3), random.bounded(253, 256))); break;
        case 3: mappings.insert(code, entry(launches, u"/program"_s)); break;
        default: break; // itself
        }
    }
    return profile(name, mappings);
}

QVariantMap randomDocument(QRandomGenerator &random)
{
    const QVariantMap plain =
        document({randomProfile(random, u"A"_s), randomProfile(random, u"B"_s), randomProfile(random, u"C"_s)},
                 {macro(uint(random.bounded(4, 7)), 1), macro(6, random.bounded(3))}, random.bounded(3));
    return SettingsDocument::completed(
        SettingsDocument::withDeviceSetting(plain, "GameMode"_L1, random.bounded(4) == 0));
}

/// Presses and releases random keys. Used on the key thread from the first burst to the end of the last.
class Storm
{
public:
    Storm(ThreadedKeyboard &keyboard, quint32 seed) : mKeyboard(keyboard), mRandom(seed) {}

    /// Posts some changes of keys.
    void burst()
    {
        mKeyboard.postToKeys([this](NotingChannel &channel) {
            for (int count = 0; count < 40; ++count)
                change(channel, std::size_t(mRandom.bounded(int(keys.size()))));
        });
    }
    /// Waits for the bursts, and releases all keys.
    void end()
    {
        mKeyboard.runOnKeys([this](NotingChannel &channel) {
            for (std::size_t index = 0; index < keys.size(); ++index) {
                if (mIsDown[index])
                    change(channel, index);
            }
        });
    }

private:
    void change(NotingChannel &channel, std::size_t index)
    {
        mIsDown[index] = !mIsDown[index];
        const HidUsage usage{HidUsage::keyboardPage, keys[index]};
        channel.keyChanged(usage, mIsDown[index], KeyPath::Time(0), usage);
    }

    ThreadedKeyboard &mKeyboard;
    QRandomGenerator mRandom;
    std::array<bool, keys.size()> mIsDown{};
};

/// Notes the thread on which it is freed.
struct Witness
{
    explicit Witness(std::atomic<const QThread *> &freedOn) : mFreedOn(freedOn) {}
    ~Witness() { mFreedOn = QThread::currentThread(); }
    Q_DISABLE_COPY_MOVE(Witness)

private:
    std::atomic<const QThread *> &mFreedOn;
};

/// The profile in effect, recognised by its single key: in the first profile it sends 10, in the second 11.
quint16 sentBy(ThreadedKeyboard &keyboard, quint16 key)
{
    quint16 sent = 0;
    keyboard.press(key);
    keyboard.runOnKeys([&](NotingChannel &channel) {
        for (const quint16 usage : {quint16(10), quint16(11)}) {
            if (channel.isDown(usage))
                sent = usage;
        }
    });
    keyboard.release(key);
    return sent;
}

} // namespace

class KeyPathThreadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stormLeavesNoKeyDown_data();
    void stormLeavesNoKeyDown();
    void bothSidesAgreeAfterSimultaneousSwitches_data();
    void bothSidesAgreeAfterSimultaneousSwitches();
    void pendingCallsOfAnEarlierKeyboardAreIgnored();
    void oldSettingsAreFreedOnTheMainThread_data();
    void oldSettingsAreFreedOnTheMainThread();
};

void KeyPathThreadTest::stormLeavesNoKeyDown_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U, 4U})
        QTest::addRow("%u", seed) << seed;
}

void KeyPathThreadTest::stormLeavesNoKeyDown()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    ThreadedKeyboard keyboard;
    CurrentKeyboard current;
    QVariantMap stored = randomDocument(random);
    int choices = 0, programs = 0, captured = 0, reported = 0;
    connect(&current, &CurrentKeyboard::profileChosen, this, [&](int index) {
        ++choices;
        if (index < Document(stored).profiles().size() && random.bounded(3) != 0) {
            stored = SettingsDocument::completed(SettingsDocument::withActiveProfile(stored, index));
            current.apply(stored, true);
        } // otherwise the switch could not be stored
    });
    connect(&current, &CurrentKeyboard::programChosen, this,
            [&](const QString &program) { programs += program == "/program"_L1; });
    connect(&current, &CurrentKeyboard::keyCaptured, this, [&] { ++captured; });
    connect(&current, &CurrentKeyboard::keyReported, this, [&] { ++reported; });
    current.use(keyboard, stored);

    Storm storm(keyboard, seed + 100);
    for (int step = 0; step < 400; ++step) {
        storm.burst(); // continues while this thread does the following
        switch (random.bounded(8)) {
        case 0:
        case 1:
            stored = randomDocument(random);
            current.apply(stored, true);
            break;
        case 2: current.listen({.isCapturing = true, .isReporting = random.bounded(2) == 0}, QString()); break;
        case 3:
        case 4: current.listen({.isCapturing = false, .isReporting = random.bounded(2) == 0}, QString()); break;
        case 5: keyboard.postToKeys([](NotingChannel &channel) { Q_EMIT channel.keysLost(); }); break;
        default: QCoreApplication::processEvents();
        }
    }
    storm.end();
    QCoreApplication::processEvents();
    current.stop();
    keyboard.runOnKeys([](NotingChannel &channel) {
        QCOMPARE(channel.downCount(), std::size_t(0));
        QVERIFY(!channel.hasMadeNoSense());
        QVERIFY(channel.sent() > 500);
        QCOMPARE(channel.unflushed(), 0);
    });
    QVERIFY(choices > 0 && programs > 0 && captured > 0 && reported > 0);
}

void KeyPathThreadTest::bothSidesAgreeAfterSimultaneousSwitches_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {11U, 12U, 13U})
        QTest::addRow("%u", seed) << seed;
}

void KeyPathThreadTest::bothSidesAgreeAfterSimultaneousSwitches()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto keysOf = [](int sent) {
        return QVariantMap{{u"4"_s, entry(sendsKey, sent)},
                           {u"58"_s, entry(switchesProfile, 0)},
                           {u"59"_s, entry(switchesProfile, 1)},
                           {u"60"_s, entry(switchesProfile, 9)}};
    };
    QVariantMap stored = document({profile(u"A"_s, keysOf(10)), profile(u"B"_s, keysOf(11))});
    ThreadedKeyboard keyboard;
    CurrentKeyboard current;
    const auto activate = [&](int index) {
        stored = SettingsDocument::completed(SettingsDocument::withActiveProfile(stored, index));
        current.apply(stored, true);
    };
    int choices = 0;
    connect(&current, &CurrentKeyboard::profileChosen, this, [&](int index) {
        ++choices;
        const bool canBeStored = random.bounded(4) != 0;
        if (canBeStored && index < 2 && index != Document(stored).activeProfileIndex())
            activate(index);
    });
    current.use(keyboard, stored);
    for (int round = 0; round < 200; ++round) {
        const int expected = choices + 2;
        for (const int offset : {random.bounded(3), random.bounded(3)}) {
            const auto key = static_cast<quint16>(58 + offset);
            keyboard.postToKeys([key](NotingChannel &channel) {
                for (const bool isDown : {true, false}) {
                    const HidUsage usage{HidUsage::keyboardPage, key};
                    channel.keyChanged(usage, isDown, KeyPath::Time(0), usage);
                }
            });
        }
        if (random.bounded(2) == 0)
            activate(random.bounded(2));
        const QDeadlineTimer patience(10s);
        while (choices < expected && !patience.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCOMPARE(choices, expected);
        QCOMPARE(int(sentBy(keyboard, 4)), 10 + Document(stored).activeProfileIndex());
    }
    current.stop();
}

void KeyPathThreadTest::pendingCallsOfAnEarlierKeyboardAreIgnored()
{
    const QVariantMap stored = document({profile(u"A"_s, {{u"58"_s, entry(switchesProfile, 1)}}), profile(u"B"_s, {})});
    ThreadedKeyboard first, second;
    CurrentKeyboard current;
    QList<int> chosen;
    connect(&current, &CurrentKeyboard::profileChosen, this, [&](int index) { chosen += index; });
    current.use(first, stored);
    first.press(58); // its notification is queued for this thread now
    current.use(second, stored);
    QCoreApplication::processEvents();
    QVERIFY(chosen.isEmpty());
    current.use(first, stored);
    first.press(58);
    current.use(second, stored);
    current.use(first, stored); // a second use of the same keyboard
    QCoreApplication::processEvents();
    QVERIFY(chosen.isEmpty());
    first.press(58);
    QTRY_COMPARE(chosen, QList<int>{1});
    current.stop();
}

void KeyPathThreadTest::oldSettingsAreFreedOnTheMainThread_data()
{
    QTest::addColumn<bool>("isUsedAgain");
    QTest::newRow("a change") << false;
    QTest::newRow("another use of the keyboard") << true;
}

void KeyPathThreadTest::oldSettingsAreFreedOnTheMainThread()
{
    QFETCH(bool, isUsedAgain);
    std::atomic<const QThread *> freedOn = nullptr;
    ThreadedKeyboard keyboard, other;
    CurrentKeyboard current;
    const QVariantMap without = document({profile(u"A"_s, {})});
    {
        const QVariantMap sequence{{u"witness"_s, QVariant::fromValue(std::make_shared<Witness>(freedOn))}};
        const QVariantMap macro{{u"sequence"_s, sequence}};
        current.use(keyboard, document({profile(u"A"_s, {})}, QVariantList{macro}));
    }
    QVERIFY(!freedOn); // the keys have it
    if (isUsedAgain) {
        current.use(other, without);
        QVERIFY(!freedOn);
        current.use(keyboard, without);
    } else {
        current.apply(without, false);
    }
    QTRY_VERIFY(freedOn);
    QCOMPARE(freedOn.load(), QThread::currentThread());
    current.stop();
}

QTEST_GUILESS_MAIN(KeyPathThreadTest)
#include "keypaththreadtest.moc"
