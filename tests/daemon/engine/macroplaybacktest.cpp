// SPDX-License-Identifier: MIT
// Macros in the key engine: the time base, the limits, and the identity of macros. The engine cases test the output and
// its times.
#include "daemon/engine/keyengine.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr HidUsage trigger{HidUsage::keyboardPage, 106};

/// A macro that presses and releases the key A in turn, after these pauses.
QVariantMap macroWithPauses(const QList<int> &pausesMs, int macroId = 1)
{
    QVariantList events;
    for (const int pause : pausesMs)
        events +=
            MacroRecord::eventRecord({.command = events.size() % 2 == 0 ? MacroRecord::keyDown : MacroRecord::keyUp,
                                      .delayMs = pause,
                                      .argument = 4});
    return MacroRecord::withEvents({{u"macroID"_s, macroId}, {u"MacroName"_s, u"M"_s}}, events);
}

KeyMap mapWithMacro(int repeat, const QList<HidUsage> &keys = {trigger})
{
    QVariantMap entries;
    for (const HidUsage key : keys)
        entries.insert(QString::number(key.usage),
                       QVariantMap{{u"command"_s, 10}, {u"param1"_s, 0}, {u"param2"_s, repeat}});
    return KeyMap({{u"Keys"_s, entries}});
}

} // namespace

class MacroPlaybackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lateCallsDoNotAddUp_data();
    void lateCallsDoNotAddUp();
    void oneCallSendsABoundedNumberOfEvents();
    void macroWithoutPausesHasABoundedRate_data();
    void macroWithoutPausesHasABoundedRate();
    void numberOfPlayingMacrosIsBounded();
    void longPausesDoNotOverflow();
    void sameEventsAreTheSameMacro();
    void strangeRecordsAreNotPlayed_data();
    void strangeRecordsAreNotPlayed();
};

void MacroPlaybackTest::lateCallsDoNotAddUp_data()
{
    QTest::addColumn<int>("repeat");
    QTest::addColumn<int>("rounds");
    QTest::newRow("once") << 1 << 1;
    QTest::newRow("ten times") << 10 << 10;
    QTest::newRow("until released") << 255 << 12;
}

/// 10 000 events, with each call of the engine up to 0.9 ms late. Every event is due at exactly the sum of the pauses.
void MacroPlaybackTest::lateCallsDoNotAddUp()
{
    QFETCH(int, repeat);
    QFETCH(int, rounds);
    QRandomGenerator random(10'000);
    QList<int> pauses;
    for (int count = 0; count < MacroRecord::maximumEvents; ++count)
        pauses += random.bounded(1, 40);
    KeyEngine engine;
    (void)engine.setMacros(playableMacros({macroWithPauses(pauses)}));
    (void)engine.setKeyMap(mapWithMacro(repeat));
    KeyEngine::Time expected = 123'456us;
    (void)engine.keyDown(trigger, expected);
    qint64 sent = 0;
    for (int round = 0; round < rounds; ++round) {
        for (const int pause : std::as_const(pauses)) {
            expected += std::chrono::milliseconds(pause);
            QCOMPARE(engine.nextDeadline().value_or(0us).count(), expected.count());
            sent += engine.advance(expected + std::chrono::microseconds(random.bounded(900))).size();
        }
    }
    QCOMPARE(sent, qint64(pauses.size()) * rounds);
    QCOMPARE(engine.nextDeadline().has_value(), repeat == 255);
}

void MacroPlaybackTest::oneCallSendsABoundedNumberOfEvents()
{
    KeyEngine engine;
    (void)engine.setMacros(playableMacros({macroWithPauses(QList<int>(MacroRecord::maximumEvents, 0))}));
    (void)engine.setKeyMap(mapWithMacro(1));
    (void)engine.keyDown(trigger, 0us);
    int sent = 0;
    while (engine.nextDeadline()) {
        QCOMPARE(engine.nextDeadline().value(), 0us); // the remaining events are due at once
        const EngineOutputs outputs = engine.advance(0us);
        QVERIFY(!outputs.isEmpty() && outputs.size() <= KeyEngine::eventsPerAdvance);
        sent += static_cast<int>(outputs.size());
    }
    QCOMPARE(sent, MacroRecord::maximumEvents);
}

void MacroPlaybackTest::macroWithoutPausesHasABoundedRate_data()
{
    QTest::addColumn<int>("events");
    QTest::addColumn<int>("eventsASecond");
    QTest::newRow("2 events") << 2 << 2'000;    // a round takes a millisecond
    QTest::newRow("10 events") << 10 << 10'000; // a round takes a tenth of a millisecond for each event
    QTest::newRow("10 000 events") << 10'000 << 10'000;
}

void MacroPlaybackTest::macroWithoutPausesHasABoundedRate()
{
    QFETCH(int, events);
    KeyEngine engine;
    (void)engine.setMacros(playableMacros({macroWithPauses(QList<int>(events, 0))}));
    (void)engine.setKeyMap(mapWithMacro(255));
    (void)engine.keyDown(trigger, 0us);
    int sent = 0;
    while (engine.nextDeadline().value() < 1s)
        sent += static_cast<int>(engine.advance(engine.nextDeadline().value()).size());
    QTEST(sent, "eventsASecond");
}

void MacroPlaybackTest::numberOfPlayingMacrosIsBounded()
{
    QList<HidUsage> keys;
    for (quint16 usage = 4; keys.size() <= static_cast<qsizetype>(KeyEngine::maximumPlaybacks); ++usage)
        keys += HidUsage{HidUsage::keyboardPage, usage};
    KeyEngine engine;
    const QVariantMap macro =
        MacroRecord::withEvents({}, {MacroRecord::eventRecord({.command = 1, .delayMs = 1, .argument = 225})});
    (void)engine.setMacros(playableMacros({macro}));
    (void)engine.setKeyMap(mapWithMacro(254, keys));
    for (const HidUsage key : std::as_const(keys))
        (void)engine.keyDown(key, 0us);
    for (const HidUsage key : std::as_const(keys))
        (void)engine.keyUp(key, 0us);
    // A second press ends each macro except the last. The last did not begin for lack of room, and begins now.
    for (const HidUsage key : keys.first(keys.size() - 1)) {
        QVERIFY(engine.nextDeadline());
        (void)engine.keyDown(key, 0us);
    }
    QVERIFY(!engine.nextDeadline());
    (void)engine.keyDown(keys.constLast(), 0us);
    QVERIFY(engine.nextDeadline());
}

void MacroPlaybackTest::longPausesDoNotOverflow()
{
    constexpr int longest = std::numeric_limits<int>::max(); // 24 days
    KeyEngine engine;
    (void)engine.setMacros(playableMacros({macroWithPauses(QList<int>(MacroRecord::maximumEvents, longest))}));
    (void)engine.setKeyMap(mapWithMacro(10));
    (void)engine.keyDown(trigger, 0us);
    qint64 events = 0;
    while (const auto deadline = engine.nextDeadline()) {
        ++events;
        QVERIFY(*deadline == std::chrono::milliseconds(longest) * events);
        QCOMPARE(engine.advance(*deadline).size(), 1);
    }
    QCOMPARE(events, 10 * MacroRecord::maximumEvents);
}

void MacroPlaybackTest::sameEventsAreTheSameMacro()
{
    const QVariantMap first = macroWithPauses({1, 2}, 1);
    const QVariantMap second = macroWithPauses({1, 2}, 2);
    const PlayableMacros before = playableMacros({first, second});
    QVERIFY(before[0] != before[1]);

    QVariantMap renamed = second;
    renamed.insert(u"MacroName"_s, u"Other"_s);
    const PlayableMacros moved = playableMacros({renamed}, before);
    QCOMPARE(moved.size(), std::size_t(1));
    QVERIFY(moved[0] == before[1]);

    const PlayableMacros edited = playableMacros({macroWithPauses({1, 3}, 1), second}, before);
    QVERIFY(edited[0] != before[0]);
    QVERIFY(edited[1] == before[1]);
}

void MacroPlaybackTest::strangeRecordsAreNotPlayed_data()
{
    QTest::addColumn<QVariant>("record");
    const auto withSequence = [](const QVariant &sequence) { return QVariant(QVariantMap{{u"sequence"_s, sequence}}); };
    const auto withEvents = [&](const QVariant &events) { return withSequence(QVariantMap{{u"Events"_s, events}}); };
    QTest::newRow("no dictionary") << QVariant(u"text"_s);
    QTest::newRow("empty") << QVariant(QVariantMap());
    QTest::newRow("sequence that is an array") << withSequence(QVariantList{1, 2});
    QTest::newRow("events that are a dictionary") << withEvents(QVariantMap{{u"x"_s, 1}});
    QTest::newRow("events under another key")
        << withSequence(QVariantMap{{u"MacroEvents"_s, MacroRecord::events(macroWithPauses({1, 1}))}});
    QTest::newRow("events that are no dictionaries") << withEvents(QVariantList{1, u"x"_s, QVariantList()});
    QTest::newRow("empty events") << withEvents(QVariantList{QVariantMap(), QVariantMap()});
    QTest::newRow("fields that are no numbers")
        << withEvents(QVariantList{QVariantMap{{u"command"_s, QByteArray("x")}, {u"page"_s, QVariantMap()}}});
    QTest::newRow("key out of range") << withEvents(
        QVariantList{QVariantMap{{u"command"_s, 1}, {u"page"_s, 7}, {u"argument"_s, 0x10004}}});
}

void MacroPlaybackTest::strangeRecordsAreNotPlayed()
{
    QFETCH(QVariant, record);
    const PlayableMacros macros = playableMacros({record});
    QCOMPARE(macros.size(), std::size_t(1));
    QVERIFY(macros.front()->steps.empty());
    KeyEngine engine;
    (void)engine.setMacros(macros);
    (void)engine.setKeyMap(mapWithMacro(255));
    QVERIFY(engine.keyDown(trigger, 0us).isEmpty());
    QVERIFY(!engine.nextDeadline());
}

QTEST_APPLESS_MAIN(MacroPlaybackTest)
#include "macroplaybacktest.moc"
