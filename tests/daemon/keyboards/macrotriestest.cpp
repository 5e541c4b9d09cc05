// SPDX-License-Identifier: MIT
// Tries of macros, with the clock of the test and callers on the bus.
#include "daemon/keyboards/macrotries.h"

#include "daemon/engine/keyengine.h"
#include "keys/keymapping.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Refusal = MacroTries::Refusal;
using End = MacroTries::End;

namespace {

constexpr int macroId = 7;
constexpr int once = KeyMappings::playOnceValue;
constexpr int untilReleased = KeyMappings::repeatUntilReleasedValue;
constexpr int untilPressedAgain = KeyMappings::repeatUntilPressedAgainValue;
constexpr uint keyA = 4;
constexpr uint keyB = 5;

QVariantMap eventOf(int command, int delayMs, uint argument, int page = MacroRecord::keyboardPage)
{
    return MacroRecord::eventRecord({.command = command, .delayMs = delayMs, .page = page, .argument = argument});
}

QVariantMap macroWith(const QVariantList &events, int id = macroId, const QString &name = u"M"_s)
{
    return MacroRecord::withEvents({{u"macroID"_s, id}, {u"MacroName"_s, name}}, events);
}

/// A is pressed after 10 ms and released after 30 ms.
QVariantMap simpleMacro(int id = macroId)
{
    return macroWith({eventOf(1, 10, keyA), eventOf(0, 20, keyA)}, id);
}

/// Keys and buttons go down and up in any order: also twice, also without a release.
QVariantMap randomMacro(QRandomGenerator &random)
{
    QVariantList events;
    for (int count = random.bounded(1, 30); count > 0; --count) {
        const bool isKey = random.bounded(3) > 0;
        const uint argument = isKey ? keyA + random.bounded(4) : 1 + random.bounded(10); // there is no button 10
        events += eventOf(random.bounded(2), random.bounded(4) == 0 ? 0 : random.bounded(-5, 60), argument,
                          isKey ? MacroRecord::keyboardPage : MacroRecord::buttonPage);
    }
    return macroWith(events);
}

struct Output
{
    KeyEngine::Time time;
    HidUsage usage;
    bool isDown = false;

    bool operator==(const Output &) const = default;
};

/// The outputs of the key engine for a key that plays `macro` and is released after `held`, up to that time.
QList<Output> outputsOfEngine(const QVariantMap &macro, int repeat, KeyEngine::Time held)
{
    constexpr HidUsage trigger{HidUsage::keyboardPage, 106};
    KeyEngine engine;
    (void)engine.setMacros(playableMacros({macro}));
    (void)engine.setKeyMap(
        KeyMap({{u"Keys"_s, KeyMappings::withEntry({}, QString::number(trigger.usage),
                                                   KeyMappings::Assignment::playMacro, 0, repeat)}}));
    QList<Output> outputs;
    const auto note = [&outputs](const EngineOutputs &some, KeyEngine::Time now) {
        for (const EngineOutput &output : some)
            outputs += {.time = now, .usage = output.usage, .isDown = output.kind == EngineOutput::Kind::sendDown};
    };
    note(engine.keyDown(trigger, 0us), 0us);
    while (engine.nextDeadline() && *engine.nextDeadline() <= held) {
        const KeyEngine::Time now = *engine.nextDeadline();
        note(engine.advance(now), now);
    }
    note(engine.keyUp(trigger, held), held);
    return outputs;
}

/// A program on the bus.
class Caller
{
public:
    explicit Caller(const QString &name)
        : mName(name), mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
    }
    ~Caller() { leave(); }
    Q_DISABLE_COPY_MOVE(Caller)
    [[nodiscard]] QString address() const { return mBus.baseService(); }
    void leave()
    {
        mBus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(mName);
    }

private:
    QString mName;
    QDBusConnection mBus;
};

} // namespace

class MacroTriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void outputIsThatOfTheKeyEngine_data();
    void outputIsThatOfTheKeyEngine();
    void eventsHaveTheIndexesOfTheRecord();
    void startPlaysNothingYet();
    void refusesWhatNoKeyCouldPlay_data();
    void refusesWhatNoKeyCouldPlay();
    void repeatsWithoutAKeyUntilStopped_data();
    void repeatsWithoutAKeyUntilStopped();
    void stopReleasesTheHeldKeys();
    void otherCallersCannotStopATry();
    void floodIsBatchedAndEnds();
    void silentMacroEndsAndRests();
    void endlessMacroEndsAfterALongTime();
    void endsWithAChangeOfTheMacro_data();
    void endsWithAChangeOfTheMacro();
    void staysWithOtherChanges();
    void callerHasOneTry();
    void numberOfTriesIsBounded();
    void endsWithItsCaller();
    void endsForACallerThatHadGoneBefore();

private:
    /// Advances the time to `end`, and wakes the tries whenever they have asked for it.
    void passTime(KeyEngine::Time end)
    {
        while (mWakeTime && *mWakeTime <= end) {
            mNow = std::max(mNow, *std::exchange(mWakeTime, {}));
            ++mWakeUps;
            mTries->wake();
        }
        mNow = end;
    }
    [[nodiscard]] quint32 start(int repeat = once, int id = macroId)
    {
        return mTries->start(mCaller->address(), id, repeat).valueOr(0);
    }
    [[nodiscard]] QList<TriedEvent> events() const
    {
        QList<TriedEvent> all;
        for (const QList<TriedEvent> &batch : mBatches)
            all += batch;
        return all;
    }

    KeyEngine::Time mNow{};
    std::optional<KeyEngine::Time> mWakeTime;
    int mWakeUps = 0;
    std::unique_ptr<Caller> mCaller;
    std::unique_ptr<MacroTries> mTries;
    QList<QList<TriedEvent>> mBatches;
    QList<KeyEngine::Time> mBatchTimes;
    QList<std::pair<quint32, End>> mEnds;
};

void MacroTriesTest::init()
{
    mNow = 5s;
    mWakeUps = 0;
    mCaller = std::make_unique<Caller>(u"caller"_s);
    mTries = std::make_unique<MacroTries>(
        QDBusConnection::sessionBus(),
        KeyClock{.now = [this] { return mNow; },
                 .wakeAt = [this](std::optional<KeyEngine::Time> time) { mWakeTime = time; }});
    mTries->setMacros({macroWith({}, 1), simpleMacro()});
    connect(mTries.get(), &MacroTries::played, this, [this](const QString &, quint32, const QList<TriedEvent> &events) {
        mBatches += events;
        mBatchTimes += mNow;
    });
    connect(mTries.get(), &MacroTries::ended, this, [this](const QString &, quint32 number, End end) {
        mEnds += {number, end};
    });
}

void MacroTriesTest::cleanup()
{
    mTries.reset();
    mCaller.reset();
    mBatches.clear();
    mBatchTimes.clear();
    mEnds.clear();
    mWakeTime.reset();
}

void MacroTriesTest::outputIsThatOfTheKeyEngine_data()
{
    QTest::addColumn<int>("repeat");
    QTest::newRow("once") << once;
    QTest::newRow("3 times") << 3;
    QTest::newRow("until released") << untilReleased;
}

void MacroTriesTest::outputIsThatOfTheKeyEngine()
{
    QFETCH(int, repeat);
    QRandomGenerator random(20);
    int compared = 0;
    for (int round = 0; round < 200; ++round) {
        const QVariantMap macro = randomMacro(random);
        const KeyEngine::Time held = std::chrono::milliseconds(random.bounded(1, 3000));
        mBatches.clear();
        mTries->setMacros({macro});
        const KeyEngine::Time begin = mNow;
        const quint32 number = start(repeat);
        if (number == 0)
            continue; // nothing playable
        passTime(begin + held);
        if (repeat == untilReleased)
            mTries->stop(mCaller->address(), number);
        passTime(begin + held + 1min);
        QList<Output> outputs;
        for (const TriedEvent &event : events())
            outputs += {.time = event.time, .usage = event.usage, .isDown = event.isDown};
        const KeyEngine::Time end = repeat == untilReleased ? held : held + 1min;
        QCOMPARE(outputs, outputsOfEngine(macro, repeat, end));
        compared += static_cast<int>(outputs.size());
    }
    QVERIFY(compared > 1000);
}

void MacroTriesTest::eventsHaveTheIndexesOfTheRecord()
{
    // Neither an unknown button nor a second press of a key is an event for the computer. The end releases A.
    mTries->setMacros(
        {macroWith({eventOf(1, 0, 77, MacroRecord::buttonPage), eventOf(1, 10, keyA), eventOf(1, 10, keyA),
                    eventOf(1, 10, 2, MacroRecord::buttonPage), eventOf(0, 0, 2, MacroRecord::buttonPage)})});
    (void)start();
    passTime(mNow + 1s);
    const HidUsage a{.usage = keyA};
    const HidUsage right{.page = HidUsage::buttonPage, .usage = 2};
    const QList<TriedEvent> expected{{.event = 1, .time = 10ms, .usage = a, .isDown = true},
                                     {.event = 3, .time = 30ms, .usage = right, .isDown = true},
                                     {.event = 4, .time = 30ms, .usage = right, .isDown = false},
                                     {.event = -1, .time = 30ms, .usage = a, .isDown = false}};
    QCOMPARE(events(), expected);
    QCOMPARE(mEnds.size(), 1);
    QCOMPARE(mEnds.first().second, End::finished);
}

void MacroTriesTest::startPlaysNothingYet()
{
    mTries->setMacros({macroWith({eventOf(1, 0, keyA)})});
    QVERIFY(start() > 0);
    QVERIFY(mBatches.isEmpty()); // the caller does not know its number yet
    passTime(mNow);
    QCOMPARE(mBatches.size(), 1);
}

void MacroTriesTest::refusesWhatNoKeyCouldPlay_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("repeat");
    QTest::addColumn<int>("refusal");
    QTest::newRow("unknown macro") << 8 << once << int(Refusal::gone);
    QTest::newRow("number of a record without one") << 0 << once << int(Refusal::gone);
    QTest::newRow("negative number") << -1 << once << int(Refusal::gone);
    QTest::newRow("macro without events") << 1 << once << int(Refusal::empty);
    for (const int repeat : {0, 11, 253, 256, -1})
        QTest::addRow("repeat %d", repeat) << macroId << repeat << int(Refusal::noSuchRepeat);
}

void MacroTriesTest::refusesWhatNoKeyCouldPlay()
{
    QFETCH(int, id);
    QFETCH(int, repeat);
    QFETCH(int, refusal);
    mTries->setMacros({macroWith({}, 1), simpleMacro(), QVariantMap{{u"MacroName"_s, u"without a number"_s}}});
    const Result<quint32, Refusal> started = mTries->start(mCaller->address(), id, repeat);
    QVERIFY(!started);
    QCOMPARE(int(started.error()), refusal);
    QVERIFY(!mWakeTime);
}

void MacroTriesTest::repeatsWithoutAKeyUntilStopped_data()
{
    QTest::addColumn<int>("repeat");
    QTest::newRow("until released") << untilReleased;
    QTest::newRow("until pressed again") << untilPressedAgain;
}

void MacroTriesTest::repeatsWithoutAKeyUntilStopped()
{
    QFETCH(int, repeat);
    const quint32 number = start(repeat);
    passTime(mNow + 30s); // a round takes 30 ms
    QVERIFY(mEnds.isEmpty());
    mTries->stop(mCaller->address(), number); // also reports what waits for the next batch
    QCOMPARE(events().size(), 2000);
    QCOMPARE(mEnds, (QList<std::pair<quint32, End>>{{number, End::stopped}}));
    passTime(mNow + 30s);
    QCOMPARE(events().size(), 2000);
    QVERIFY(!mWakeTime);
}

void MacroTriesTest::stopReleasesTheHeldKeys()
{
    mTries->setMacros({macroWith({eventOf(1, 10, keyB), eventOf(1, 0, keyA), eventOf(0, 10'000, keyB)})});
    const quint32 number = start();
    passTime(mNow + 500ms);
    QCOMPARE(events().size(), 2);
    mTries->stop(mCaller->address(), number);
    const QList<TriedEvent> expected{{.event = -1, .time = 500ms, .usage = {.usage = keyA}, .isDown = false},
                                     {.event = -1, .time = 500ms, .usage = {.usage = keyB}, .isDown = false}};
    QCOMPARE(events().mid(2), expected);
}

void MacroTriesTest::otherCallersCannotStopATry()
{
    const quint32 number = start(untilReleased);
    mTries->stop(u":1.9999"_s, number);
    mTries->stop(mCaller->address(), number + 1);
    QVERIFY(mEnds.isEmpty());
    passTime(mNow + 60ms);
    mTries->stop(mCaller->address(), number);
    QCOMPARE(events().size(), 4);
    QCOMPARE(mEnds.size(), 1);
}

void MacroTriesTest::floodIsBatchedAndEnds()
{
    QVariantList flood;
    for (int count = 0; count < MacroRecord::maximumEvents; ++count)
        flood += eventOf(count % 2 == 0 ? MacroRecord::keyDown : MacroRecord::keyUp, 0, keyA);
    mTries->setMacros({macroWith(flood)});
    (void)start(untilReleased);
    passTime(mNow + 1min);
    for (qsizetype index = 1; index < mBatchTimes.size(); ++index)
        QVERIFY(mBatchTimes[index] - mBatchTimes[index - 1] >= MacroTries::batchInterval);
    for (const QList<TriedEvent> &batch : mBatches)
        QVERIFY(batch.size() <= MacroTries::stepsPerBatch);
    QCOMPARE(events().size(), MacroTries::maximumEvents);
    QCOMPARE(mEnds.size(), 1);
    QCOMPARE(mEnds.first().second, End::limit);
}

void MacroTriesTest::silentMacroEndsAndRests()
{
    // Only its first event does anything, and there is no pause.
    QVariantList silent{eventOf(1, 0, keyA)};
    for (int count = 0; count < 1000; ++count)
        silent += eventOf(1, 0, keyA);
    mTries->setMacros({macroWith(silent)});
    (void)start(untilReleased);
    passTime(mNow + 10s);
    QVERIFY(mWakeUps <= 10s / MacroTries::batchInterval + 1);
    passTime(mNow + MacroTries::longestTry);
    QCOMPARE(mEnds.size(), 1);
    QCOMPARE(mEnds.first().second, End::limit);
    QVERIFY(!events().last().isDown);
}

void MacroTriesTest::endlessMacroEndsAfterALongTime()
{
    mTries->setMacros({macroWith({eventOf(1, 60'000, keyA)})});
    (void)start(untilPressedAgain);
    passTime(mNow + MacroTries::longestTry - 1ms);
    QVERIFY(mEnds.isEmpty());
    passTime(mNow + 1ms);
    QCOMPARE(mEnds.size(), 1);
    QCOMPARE(mEnds.first().second, End::limit);
    QVERIFY(!events().last().isDown);
    QVERIFY(!mWakeTime);
}

void MacroTriesTest::endsWithAChangeOfTheMacro_data()
{
    QTest::addColumn<QVariantList>("macros");
    QTest::newRow("deleted") << QVariantList{simpleMacro(1)};
    QTest::newRow("other pause") << QVariantList{macroWith({eventOf(1, 10, keyA), eventOf(0, 21, keyA)})};
    QTest::newRow("emptied") << QVariantList{macroWith({})};
    QTest::newRow("all deleted") << QVariantList{};
}

void MacroTriesTest::endsWithAChangeOfTheMacro()
{
    QFETCH(QVariantList, macros);
    const quint32 number = start(untilReleased);
    passTime(mNow + 15ms);
    mTries->setMacros(macros);
    QCOMPARE(mEnds, (QList<std::pair<quint32, End>>{{number, End::changed}}));
    QCOMPARE(events().size(), 2);
    QVERIFY(!events().last().isDown);
    QVERIFY(!mWakeTime);
}

void MacroTriesTest::staysWithOtherChanges()
{
    (void)start(untilReleased);
    passTime(mNow + 15ms);
    QVariantMap renamed = simpleMacro();
    renamed.insert(u"MacroName"_s, u"Renamed"_s);
    mTries->setMacros({simpleMacro(1), simpleMacro(2), renamed}); // also at another index
    QVERIFY(mEnds.isEmpty());
    passTime(mNow + 35ms); // the third event waits for the next batch
    QCOMPARE(events().size(), 3);
}

void MacroTriesTest::callerHasOneTry()
{
    const quint32 first = start(untilReleased);
    const quint32 second = start(untilReleased);
    QVERIFY(second > first);
    QCOMPARE(mEnds, (QList<std::pair<quint32, End>>{{first, End::stopped}}));
    QVERIFY(!mTries->start(mCaller->address(), 99, once)); // a refused call ends nothing
    QCOMPARE(mEnds.size(), 1);
    passTime(mNow + 30ms);
    QCOMPARE(events().size(), 2);
}

void MacroTriesTest::numberOfTriesIsBounded()
{
    std::vector<std::unique_ptr<Caller>> callers;
    for (std::size_t count = 0; count < MacroTries::maximumTries; ++count) {
        callers.push_back(std::make_unique<Caller>(u"caller %1"_s.arg(count)));
        QVERIFY(mTries->start(callers.back()->address(), macroId, untilReleased));
    }
    const Result<quint32, Refusal> refused = mTries->start(mCaller->address(), macroId, once);
    QVERIFY(!refused);
    QCOMPARE(int(refused.error()), int(Refusal::tooMany));
    QVERIFY(mTries->start(callers.front()->address(), macroId, untilReleased)); // in the place of its own
    callers.pop_back();
    QTRY_VERIFY(mTries->start(mCaller->address(), macroId, once));
}

void MacroTriesTest::endsWithItsCaller()
{
    (void)start(untilReleased);
    QVERIFY(mWakeTime);
    mCaller->leave();
    QTRY_VERIFY(!mWakeTime);
    QVERIFY(mEnds.isEmpty()); // it has no receiver
    QVERIFY(mBatches.isEmpty());
}

void MacroTriesTest::endsForACallerThatHadGoneBefore()
{
    const QString address = mCaller->address();
    mCaller->leave();
    QVERIFY(mTries->start(address, macroId, untilReleased));
    QTRY_VERIFY(!mWakeTime);
}

QTEST_GUILESS_MAIN(MacroTriesTest)
#include "macrotriestest.moc"
