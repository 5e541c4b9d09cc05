// SPDX-License-Identifier: MIT
// Properties of the key engine that hold for all assignments, keys, switches and captures. The random sequences are
// always the same.
#include "daemon/engine/keyengine.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int sequenceCount = 4000;
constexpr int stepsPerSequence = 80;
constexpr int macroCount = 4;

// Few keys, which often meet: letters, both Shifts and Commands, an extra key, a button.
constexpr std::array keys{HidUsage{7, 4},   HidUsage{7, 5},   HidUsage{7, 6},   HidUsage{7, 7},
                          HidUsage{7, 106}, HidUsage{7, 224}, HidUsage{7, 225}, HidUsage{7, 227},
                          HidUsage{7, 229}, HidUsage{7, 231}, HidUsage{9, 4}};

/// The computer's view. A usage that goes down twice, or up without being down, is a fault.
class Computer
{
public:
    void see(const EngineOutputs &outputs)
    {
        for (const EngineOutput &output : outputs) {
            const bool isDown = std::ranges::find(mDown, output.usage) != mDown.end();
            if (output.kind == EngineOutput::Kind::sendDown) {
                mIsWrong = mIsWrong || isDown;
                mDown.push_back(output.usage);
            } else if (output.kind == EngineOutput::Kind::sendUp) {
                mIsWrong = mIsWrong || !isDown;
                std::erase(mDown, output.usage);
            }
        }
    }

    [[nodiscard]] bool isWrong() const { return mIsWrong; }
    [[nodiscard]] const std::vector<HidUsage> &down() const { return mDown; }

private:
    std::vector<HidUsage> mDown;
    bool mIsWrong = false;
};

template <typename List> auto oneOf(const List &list, QRandomGenerator &random)
{
    return list[static_cast<std::size_t>(random.bounded(int(std::size(list))))];
}

QVariantMap randomMacroEntry(QRandomGenerator &random)
{
    constexpr std::array repeats{1, 2, 10, 254, 255, 255, 0};
    return {
        {u"command"_s, 10}, {u"param1"_s, random.bounded(-1, macroCount + 1)}, {u"param2"_s, oneOf(repeats, random)}};
}

QVariantMap randomEntry(QRandomGenerator &random)
{
    if (random.bounded(3) == 0)
        return randomMacroEntry(random);
    constexpr std::array commands{45, 45, 16, 16, 16, 20, 17, 10, 46, 30, 0, -1};
    return {{u"command"_s, oneOf(commands, random)},
            {u"param1"_s, random.bounded(6) == 0 ? random.bounded(-5, 300) : int(oneOf(keys, random).usage)},
            {u"param2"_s, random.bounded(3) == 0 ? random.bounded(-300, 600) : 0}};
}

KeyMap randomMap(QRandomGenerator &random, QVariantMap entries = {})
{
    for (const HidUsage key : keys) {
        if (random.bounded(4) != 0)
            entries.insert(QString::number(key.usage), randomEntry(random));
    }
    return KeyMap({{u"Keys"_s, entries}});
}

QVariantMap randomEvent(QRandomGenerator &random)
{
    const HidUsage key = oneOf(keys, random);
    const bool isStrange = random.bounded(10) == 0;
    return MacroRecord::eventRecord({.command = random.bounded(isStrange ? 5 : 2),
                                     .delayMs = std::max(0, random.bounded(-5, 10)),
                                     .page = isStrange ? random.bounded(300) : key.page,
                                     .argument = isStrange ? random.generate() : key.usage});
}

QVariantMap randomMacro(QRandomGenerator &random)
{
    QVariantList events;
    for (int count = random.bounded(8); count > 0; --count)
        events += randomEvent(random);
    return MacroRecord::withEvents({}, events);
}

/// The macros of a document that clients edit.
class Macros
{
public:
    explicit Macros(QRandomGenerator &random)
    {
        for (int count = 0; count < macroCount; ++count)
            add(random);
    }

    [[nodiscard]] const PlayableMacros &edit(QRandomGenerator &random)
    {
        if (random.bounded(3) == 0)
            mRecords.removeAt(random.bounded(int(mRecords.size())));
        else if (random.bounded(2) == 0)
            mRecords[random.bounded(int(mRecords.size()))] = identified(randomMacro(random));
        while (mRecords.size() < macroCount)
            add(random);
        return playable();
    }

    [[nodiscard]] const PlayableMacros &playable() { return mPlayable = playableMacros(mRecords, mPlayable); }

private:
    QVariantMap identified(QVariantMap record)
    {
        record.insert(u"macroID"_s, ++mLastId);
        return record;
    }
    void add(QRandomGenerator &random) { mRecords += identified(randomMacro(random)); }

    QVariantList mRecords;
    PlayableMacros mPlayable;
    int mLastId = 0;
};

/// An engine in use, and the computer that receives its output.
struct Use
{
    explicit Use(QRandomGenerator &generator) : random(generator), macros(generator)
    {
        (void)engine.setMacros(macros.playable());
    }

    /// Advances the time. A busy daemon is late, and other inputs arrive before all due events are sent.
    void passTime()
    {
        now += std::chrono::microseconds(random.bounded(6000));
        for (int calls = random.bounded(4); calls > 0; --calls)
            computer.see(engine.advance(now));
    }

    QRandomGenerator &random;
    KeyEngine engine;
    Computer computer;
    Macros macros;
    KeyEngine::Time now{};
};

/// One possible step of an engine; true when the keyboard was removed.
bool step(Use &use, const std::array<KeyMap, 3> &profiles)
{
    KeyEngine &engine = use.engine;
    Computer &computer = use.computer;
    QRandomGenerator &random = use.random;
    switch (random.bounded(30)) {
    case 0: computer.see(engine.setKeyMap(randomMap(random))); break;
    case 1: computer.see(engine.setKeyMap(oneOf(profiles, random))); break;
    case 2: computer.see(engine.setGameMode(random.bounded(2) == 0)); break;
    case 3: computer.see(engine.setCapturing(random.bounded(2) == 0)); break;
    case 4:
        if (random.bounded(8) != 0)
            break;
        computer.see(engine.releaseAll());
        return true;
    case 5: computer.see(engine.setMacros(use.macros.edit(random))); break;
    case 6: computer.see(engine.stopMacros()); break;
    case 7:
    case 8:
    case 9:
    case 10:
    case 11:
    case 12: use.passTime(); break;
    default: {
        const HidUsage key = oneOf(keys, random);
        const EngineOutputs outputs =
            random.bounded(2) == 0 ? engine.keyDown(key, use.now) : engine.keyUp(key, use.now);
        computer.see(outputs);
        for (const EngineOutput &output : outputs) {
            if (output.kind == EngineOutput::Kind::switchProfile)
                computer.see(engine.setKeyMap(oneOf(profiles, random)));
        }
    }
    }
    return false;
}

std::vector<HidUsage> asVector(const QList<HidUsage> &list)
{
    return {list.begin(), list.end()};
}

} // namespace

class KeyEnginePropertiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPressedKeyIsReleased();
    void macrosEndWhenTheirKeysAreUp();
    void macrosDoNotDisturbEachOther();
    void removalLeavesNothingDown();
    void releaseUndoesOnlyItsPress();
    void identityProfilesChangeNothing_data();
    void identityProfilesChangeNothing();
    void capturedKeysLeaveNoTrace();
};

void KeyEnginePropertiesTest::everyPressedKeyIsReleased()
{
    QRandomGenerator random(271);
    bool hasSent = false;
    bool hasPlayed = false;
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        Use use(random);
        const std::array profiles{randomMap(random), randomMap(random), KeyMap()};
        (void)use.engine.setKeyMap(profiles.front());
        for (int count = 0; count < stepsPerSequence; ++count) {
            (void)step(use, profiles);
            QVERIFY2(!use.computer.isWrong(), qPrintable(u"sequence %1, step %2"_s.arg(sequence).arg(count)));
            QVERIFY(asVector(use.engine.sentDown()) == use.computer.down());
            hasSent = hasSent || !use.computer.down().empty();
            hasPlayed = hasPlayed || use.engine.nextDeadline();
        }
        for (const HidUsage key : keys)
            use.computer.see(use.engine.keyUp(key, use.now));
        use.computer.see(use.engine.stopMacros());
        QVERIFY2(!use.computer.isWrong() && use.computer.down().empty(),
                 qPrintable(u"end of sequence %1"_s.arg(sequence)));
        QVERIFY(!use.engine.nextDeadline());
    }
    QVERIFY(hasSent && hasPlayed);
}

/// A macro that plays once, a number of times or until released ends without further input.
void KeyEnginePropertiesTest::macrosEndWhenTheirKeysAreUp()
{
    QRandomGenerator random(32);
    int endless = 0;
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        Use use(random);
        const std::array profiles{randomMap(random), randomMap(random), KeyMap()};
        (void)use.engine.setKeyMap(profiles.front());
        for (int count = 0; count < stepsPerSequence; ++count)
            (void)step(use, profiles);
        for (const HidUsage key : keys)
            use.computer.see(use.engine.keyUp(key, use.now));
        const KeyEngine::Time limit = use.now + 10s; // ten rounds of eight pauses below 10 ms take less
        while (use.engine.nextDeadline().value_or(limit) < limit)
            use.computer.see(use.engine.advance(*use.engine.nextDeadline()));
        if (use.engine.nextDeadline()) {
            ++endless; // plays until a key is pressed again
            use.computer.see(use.engine.stopMacros());
        }
        QVERIFY(!use.computer.isWrong() && use.computer.down().empty());
    }
    QVERIFY(endless > 0 && endless < sequenceCount);
}

void KeyEnginePropertiesTest::removalLeavesNothingDown()
{
    QRandomGenerator random(1048);
    int removals = 0;
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        Use use(random);
        const std::array profiles{randomMap(random), randomMap(random), KeyMap()};
        for (int count = 0; count < stepsPerSequence; ++count) {
            if (!step(use, profiles))
                continue;
            ++removals;
            QVERIFY(!use.computer.isWrong() && use.computer.down().empty() && !use.engine.nextDeadline());
        }
        use.computer.see(use.engine.releaseAll()); // as at the end of the daemon
        QVERIFY(!use.computer.isWrong() && use.computer.down().empty());
        for (const HidUsage key : keys)
            QVERIFY(use.engine.keyUp(key, use.now).isEmpty());
    }
    QVERIFY(removals > 0);
}

/// A macro with a private button, which no key sends, sends the same at the same times, regardless of other macros and
/// keys.
void KeyEnginePropertiesTest::macrosDoNotDisturbEachOther()
{
    const HidUsage trigger{7, 107};
    const HidUsage own{9, 7};
    constexpr int ownIndex = 300; // no random entry uses this index
    const QVariantMap macro = MacroRecord::withEvents(
        {}, {MacroRecord::eventRecord({.command = 1, .delayMs = 3, .page = own.page, .argument = own.usage}),
             MacroRecord::eventRecord({.command = 0, .delayMs = 4, .page = own.page, .argument = own.usage})});
    const PlayableMacros alone = playableMacros({macro});
    const PlayableMacros nothing = playableMacros({QVariantMap()});
    const QVariantMap ownEntry{{u"command"_s, 10}, {u"param1"_s, ownIndex}, {u"param2"_s, 255}};
    QRandomGenerator random(107);
    for (int sequence = 0; sequence < sequenceCount / 10; ++sequence) {
        KeyEngine engine;
        PlayableMacros macros = Macros(random).playable();
        macros.resize(ownIndex, nothing.front());
        macros.push_back(alone.front());
        (void)engine.setMacros(macros);
        (void)engine.setKeyMap(randomMap(random, {{QString::number(trigger.usage), ownEntry}}));
        (void)engine.keyDown(trigger, 0ms);
        QList<qint64> times;
        for (KeyEngine::Time now{}; now < 200ms; now += 1ms) {
            while (engine.nextDeadline().value_or(now + 1ms) <= now) {
                for (const EngineOutput &output : engine.advance(now)) {
                    if (output.usage == own)
                        times += now.count() / 1000;
                }
            }
            const HidUsage key = oneOf(keys, random);
            (void)(random.bounded(2) == 0 ? engine.keyDown(key, now) : engine.keyUp(key, now));
        }
        QList<qint64> expected;
        for (qint64 round = 0; round < 200; round += 7)
            expected << round + 3 << round + 7;
        expected.removeIf([](qint64 time) { return time >= 200; });
        QCOMPARE(times, expected);
    }
}

/// A key's press and release together leave all other keys unchanged, regardless of the events in between. Only
/// modifiers that other keys have sent for themselves may come up.
void KeyEnginePropertiesTest::releaseUndoesOnlyItsPress()
{
    QRandomGenerator random(119);
    bool hasLifted = false; // at least once
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        KeyEngine engine;
        Computer computer;
        (void)engine.setKeyMap(randomMap(random));
        for (std::size_t index = 1; index < keys.size(); ++index) {
            if (random.bounded(2) == 0)
                computer.see(engine.keyDown(keys[index], 0ms));
        }
        const std::vector<HidUsage> before = computer.down();
        computer.see(engine.keyDown(keys.front(), 0ms));
        (void)engine.setKeyMap(randomMap(random));
        (void)engine.setCapturing(random.bounded(2) == 0);
        computer.see(engine.keyUp(keys.front(), 0ms));
        QVERIFY(!computer.isWrong());
        std::vector<HidUsage> missing;
        std::ranges::copy_if(before, std::back_inserter(missing), [&](HidUsage usage) {
            return std::ranges::find(computer.down(), usage) == computer.down().end();
        });
        QCOMPARE(computer.down().size() + missing.size(), before.size()); // nothing new is down
        QVERIFY(std::ranges::all_of(missing, &HidUsage::isModifier));
        hasLifted = hasLifted || !missing.empty();
    }
    QVERIFY(hasLifted);
}

void KeyEnginePropertiesTest::identityProfilesChangeNothing_data()
{
    QTest::addColumn<QVariantMap>("profile");
    QVariantMap named;
    QVariantMap unnamed;
    QVariantMap itself;
    for (int usage = HidUsage::firstKey; usage <= HidUsage::lastKey; ++usage) {
        const QString code = QString::number(usage);
        named.insert(code, QVariantMap{{u"command"_s, 45}, {u"param1"_s, usage}, {u"param2"_s, 0}});
        unnamed.insert(code, QVariantMap{{u"command"_s, 45}, {u"param1"_s, 0}, {u"param2"_s, 0}});
        itself.insert(code, QVariantMap{{u"command"_s, 16}, {u"param1"_s, usage}, {u"param2"_s, 0}});
    }
    QTest::newRow("no keys") << QVariantMap();
    QTest::newRow("default, code named") << QVariantMap{{u"Keys"_s, named}};
    QTest::newRow("default, no code") << QVariantMap{{u"Keys"_s, unnamed}};
    QTest::newRow("each key itself") << QVariantMap{{u"Keys"_s, itself}};
}

void KeyEnginePropertiesTest::identityProfilesChangeNothing()
{
    QFETCH(QVariantMap, profile);
    QRandomGenerator random(4);
    KeyEngine engine;
    (void)engine.setKeyMap(KeyMap(profile));
    std::vector<HidUsage> held;
    for (int count = 0; count < 20'000; ++count) {
        const HidUsage key{HidUsage::keyboardPage,
                           static_cast<quint16>(random.bounded(HidUsage::firstKey, HidUsage::lastKey + 1))};
        const bool isDown = std::ranges::find(held, key) == held.end();
        const EngineOutputs outputs = isDown ? engine.keyDown(key, 0ms) : engine.keyUp(key, 0ms);
        QCOMPARE(outputs.size(), 1);
        const auto kind = isDown ? EngineOutput::Kind::sendDown : EngineOutput::Kind::sendUp;
        QCOMPARE(outputs.front(), (EngineOutput{.kind = kind, .usage = key}));
        if (isDown)
            held.push_back(key);
        else
            std::erase(held, key);
    }
}

void KeyEnginePropertiesTest::capturedKeysLeaveNoTrace()
{
    QRandomGenerator random(29);
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        KeyEngine engine;
        Computer computer;
        (void)engine.setKeyMap(randomMap(random));
        for (const HidUsage key : keys) {
            if (random.bounded(3) == 0)
                computer.see(engine.keyDown(key, 0ms));
        }
        (void)engine.setCapturing(true);
        const std::vector<HidUsage> before = computer.down();
        for (const HidUsage key : keys) {
            const EngineOutputs outputs = engine.keyDown(key, 0ms);
            const bool isReport = outputs.size() == 1 && outputs.front().kind == EngineOutput::Kind::captured;
            QVERIFY(outputs.isEmpty() || (isReport && outputs.front().usage == key));
        }
        (void)engine.setCapturing(random.bounded(2) == 0);
        QVERIFY(asVector(engine.sentDown()) == before);
        for (const HidUsage key : keys)
            computer.see(engine.keyUp(key, 0ms));
        QVERIFY(!computer.isWrong() && computer.down().empty());
    }
}

QTEST_APPLESS_MAIN(KeyEnginePropertiesTest)
#include "keyenginepropertiestest.moc"
