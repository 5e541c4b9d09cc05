// SPDX-License-Identifier: MIT
// What holds of the key engine whatever is assigned, pressed, switched and captured: random sequences, always the same.
#include "daemon/keyengine.h"

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

// Few keys, so that they meet often: letters, both Shifts and Commands, an extra key, a button.
constexpr std::array keys{HidUsage{7, 4},   HidUsage{7, 5},   HidUsage{7, 6},   HidUsage{7, 7},
                          HidUsage{7, 106}, HidUsage{7, 224}, HidUsage{7, 225}, HidUsage{7, 227},
                          HidUsage{7, 229}, HidUsage{7, 231}, HidUsage{9, 4}};

/// The computer's view; a usage that goes down twice, or up without being down, is a fault.
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

QVariantMap randomEntry(QRandomGenerator &random)
{
    constexpr std::array commands{45, 45, 16, 16, 16, 20, 17, 10, 46, 30, 0, -1};
    return {{u"command"_s, oneOf(commands, random)},
            {u"param1"_s, random.bounded(6) == 0 ? random.bounded(-5, 300) : int(oneOf(keys, random).usage)},
            {u"param2"_s, random.bounded(3) == 0 ? random.bounded(-300, 600) : 0}};
}

KeyMap randomMap(QRandomGenerator &random)
{
    QVariantMap entries;
    for (const HidUsage key : keys) {
        if (random.bounded(4) != 0)
            entries.insert(QString::number(key.usage), randomEntry(random));
    }
    return KeyMap({{u"Keys"_s, entries}});
}

/// One step that may happen to an engine; true when the keyboard was removed.
bool step(KeyEngine &engine, Computer &computer, const std::array<KeyMap, 3> &profiles, QRandomGenerator &random)
{
    switch (random.bounded(20)) {
    case 0: engine.setKeyMap(randomMap(random)); break;
    case 1: engine.setKeyMap(oneOf(profiles, random)); break;
    case 2: computer.see(engine.setGameMode(random.bounded(2) == 0)); break;
    case 3: engine.setCapturing(random.bounded(2) == 0); break;
    case 4:
        if (random.bounded(8) != 0)
            break;
        computer.see(engine.releaseAll());
        return true;
    default: {
        const HidUsage key = oneOf(keys, random);
        const EngineOutputs outputs = random.bounded(2) == 0 ? engine.keyDown(key, 0ms) : engine.keyUp(key, 0ms);
        computer.see(outputs);
        for (const EngineOutput &output : outputs) {
            if (output.kind == EngineOutput::Kind::switchProfile)
                engine.setKeyMap(oneOf(profiles, random));
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
    void whateverWentDownComesUp();
    void removalLeavesNothingDown();
    void releaseUndoesItsPressAlone();
    void identityProfilesChangeNothing_data();
    void identityProfilesChangeNothing();
    void capturedKeysLeaveNoTrace();
};

void KeyEnginePropertiesTest::whateverWentDownComesUp()
{
    QRandomGenerator random(271);
    bool hasSent = false;
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        KeyEngine engine;
        Computer computer;
        const std::array profiles{randomMap(random), randomMap(random), KeyMap()};
        engine.setKeyMap(profiles.front());
        for (int count = 0; count < stepsPerSequence; ++count) {
            (void)step(engine, computer, profiles, random);
            QVERIFY2(!computer.isWrong(), qPrintable(u"sequence %1, step %2"_s.arg(sequence).arg(count)));
            QVERIFY(asVector(engine.sentDown()) == computer.down());
            hasSent = hasSent || !computer.down().empty();
        }
        for (const HidUsage key : keys)
            computer.see(engine.keyUp(key, 0ms));
        QVERIFY2(!computer.isWrong() && computer.down().empty(), qPrintable(u"end of sequence %1"_s.arg(sequence)));
    }
    QVERIFY(hasSent);
}

void KeyEnginePropertiesTest::removalLeavesNothingDown()
{
    QRandomGenerator random(1048);
    int removals = 0;
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        KeyEngine engine;
        Computer computer;
        const std::array profiles{randomMap(random), randomMap(random), KeyMap()};
        for (int count = 0; count < stepsPerSequence; ++count) {
            if (!step(engine, computer, profiles, random))
                continue;
            ++removals;
            QVERIFY(!computer.isWrong() && computer.down().empty());
        }
        computer.see(engine.releaseAll()); // as at the daemon's end
        QVERIFY(!computer.isWrong() && computer.down().empty());
        for (const HidUsage key : keys)
            QVERIFY(engine.keyUp(key, 0ms).isEmpty());
    }
    QVERIFY(removals > 0);
}

/// Whatever happens between a key's press and its release, the two together change nothing for the others.
void KeyEnginePropertiesTest::releaseUndoesItsPressAlone()
{
    QRandomGenerator random(119);
    for (int sequence = 0; sequence < sequenceCount; ++sequence) {
        KeyEngine engine;
        Computer computer;
        engine.setKeyMap(randomMap(random));
        for (std::size_t index = 1; index < keys.size(); ++index) {
            if (random.bounded(2) == 0)
                computer.see(engine.keyDown(keys[index], 0ms));
        }
        std::vector<HidUsage> before = computer.down();
        computer.see(engine.keyDown(keys.front(), 0ms));
        engine.setKeyMap(randomMap(random));
        engine.setCapturing(random.bounded(2) == 0);
        computer.see(engine.keyUp(keys.front(), 0ms));
        QVERIFY(!computer.isWrong());
        QVERIFY(computer.down() == before);
    }
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
    engine.setKeyMap(KeyMap(profile));
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
        engine.setKeyMap(randomMap(random));
        for (const HidUsage key : keys) {
            if (random.bounded(3) == 0)
                computer.see(engine.keyDown(key, 0ms));
        }
        engine.setCapturing(true);
        const std::vector<HidUsage> before = computer.down();
        for (const HidUsage key : keys) {
            const EngineOutputs outputs = engine.keyDown(key, 0ms);
            const bool isReport = outputs.size() == 1 && outputs.front().kind == EngineOutput::Kind::captured;
            QVERIFY(outputs.isEmpty() || (isReport && outputs.front().usage == key));
        }
        engine.setCapturing(random.bounded(2) == 0);
        QVERIFY(asVector(engine.sentDown()) == before);
        for (const HidUsage key : keys)
            computer.see(engine.keyUp(key, 0ms));
        QVERIFY(!computer.isWrong() && computer.down().empty());
    }
}

QTEST_APPLESS_MAIN(KeyEnginePropertiesTest)
#include "keyenginepropertiestest.moc"
