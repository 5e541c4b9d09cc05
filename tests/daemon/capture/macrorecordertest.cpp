// SPDX-License-Identifier: MIT
#include "daemon/capture/macrorecorder.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr HidUsage keyA{HidUsage::keyboardPage, 4};
constexpr HidUsage keyB{HidUsage::keyboardPage, 5};
constexpr HidUsage leftButton{HidUsage::buttonPage, 1};

MacroRecorder started(bool followsEvents = false, int capacity = MacroRecord::maximumEvents)
{
    MacroRecorder recorder;
    recorder.start({.macroId = 3, .capacity = capacity, .followsEvents = followsEvents, .firstDelayMs = 20});
    return recorder;
}

} // namespace

class MacroRecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsEventsWithTheirPauses();
    void postedLinesAreTheLinesOfTheRecordedEvents();
    void appendedRecordingBeginsWithADelayLine();
    void releasesHeldKeysAtTheEnd();
    void removesTheLastRecordedPress();
    void removesNothingElse_data();
    void removesNothingElse();
    void ignoresReleasesOfKeysHeldBefore();
    void ignoresKeysWhenNotRecording();
    void staysWithinItsCapacity();
    void recordingBelongsToOneMacro();
    void recordingStaysUntilItIsDiscarded();
    void newStartForgetsTheOldRecording();
    void equalTimesGiveNoPause();
    void heldKeyIsPressedOnce();
};

void MacroRecorderTest::recordsEventsWithTheirPauses()
{
    MacroRecorder recorder = started();
    (void)recorder.record(keyA, true, 1000ms);
    (void)recorder.record(keyA, false, 1015ms);
    (void)recorder.record(leftButton, true, 2515ms);
    (void)recorder.record(leftButton, false, 2515ms);
    recorder.stop(9000ms);
    QCOMPARE(recorder.record(keyA, true, 9001ms), QStringList()); // the recording has ended
    QCOMPARE(
        recorder.recorded(3),
        std::optional(QVariantList{MacroRecord::eventRecord({1, 20, 7, 4}), MacroRecord::eventRecord({0, 15, 7, 4}),
                                   MacroRecord::eventRecord({1, 1500, 9, 1}), MacroRecord::eventRecord({0, 0, 9, 1})}));
}

void MacroRecorderTest::postedLinesAreTheLinesOfTheRecordedEvents()
{
    MacroRecorder recorder = started();
    QStringList lines = recorder.record(keyA, true, 0ms);
    QCOMPARE(lines, QStringList{u"Key Press A"_s});
    lines += recorder.record(keyB, true, 7ms);
    lines += recorder.record(keyA, false, 9ms);
    lines += recorder.record(keyB, false, 1009ms);
    recorder.stop(2000ms);
    QCOMPARE(lines, eventParser::getMessagesArray(*recorder.recorded(3)));
    QCOMPARE(lines.last(), u"Key Release B"_s);
}

void MacroRecorderTest::appendedRecordingBeginsWithADelayLine()
{
    MacroRecorder recorder = started(true);
    QCOMPARE(recorder.record(keyA, true, 5000ms), QStringList({u"0.020 seconds delay\n"_s, u"Key Press A"_s}));
}

void MacroRecorderTest::releasesHeldKeysAtTheEnd()
{
    MacroRecorder recorder = started();
    (void)recorder.record(keyA, true, 0ms);
    (void)recorder.record(keyB, true, 10ms);
    recorder.stop(40ms);
    const QVariantList events = *recorder.recorded(3);
    QCOMPARE(events.size(), 4);
    QCOMPARE(events.at(2).toMap(), MacroRecord::eventRecord({0, 30, 7, 5}));
    QCOMPARE(events.at(3).toMap(), MacroRecord::eventRecord({0, 0, 7, 4}));
}

void MacroRecorderTest::removesTheLastRecordedPress()
{
    MacroRecorder recorder = started();
    (void)recorder.record(keyA, true, 1000ms);
    (void)recorder.record(keyB, true, 1700ms);
    recorder.removePress(keyB);
    recorder.stop(2700ms);
    const std::optional<QVariantList> events = recorder.recorded(3);
    QVERIFY(events);
    QCOMPARE(events->size(), 2); // the end releases A, but not B
    QCOMPARE(events->first(), MacroRecord::eventRecord({1, 20, 7, 4}));
    QCOMPARE(MacroRecord::eventFields(events->last().toMap()).argument, 4);
}

void MacroRecorderTest::removesNothingElse_data()
{
    QTest::addColumn<QList<std::pair<int, bool>>>("changes"); // key and whether it is pressed
    QTest::newRow("nothing recorded") << QList<std::pair<int, bool>>{};
    QTest::newRow("another key") << QList<std::pair<int, bool>>{{5, true}};
    QTest::newRow("another key since") << QList<std::pair<int, bool>>{{4, true}, {5, true}, {5, false}};
    QTest::newRow("its release") << QList<std::pair<int, bool>>{{4, true}, {4, false}};
}

void MacroRecorderTest::removesNothingElse()
{
    using Changes = QList<std::pair<int, bool>>;
    QFETCH(Changes, changes);
    MacroRecorder recorder = started();
    MacroRecorder untouched = started();
    for (const auto &[key, isDown] : changes) {
        const HidUsage usage{HidUsage::keyboardPage, static_cast<quint16>(key)};
        QCOMPARE(recorder.record(usage, isDown, 1000ms), untouched.record(usage, isDown, 1000ms));
    }
    recorder.removePress(keyA);
    recorder.stop(1000ms);
    untouched.stop(1000ms);
    QCOMPARE(recorder.recorded(3), untouched.recorded(3));
}

void MacroRecorderTest::ignoresReleasesOfKeysHeldBefore()
{
    MacroRecorder recorder = started();
    QCOMPARE(recorder.record(keyA, false, 0ms), QStringList());
    recorder.stop(1ms);
    QCOMPARE(recorder.recorded(3), std::optional(QVariantList()));
}

void MacroRecorderTest::ignoresKeysWhenNotRecording()
{
    MacroRecorder recorder;
    QCOMPARE(recorder.record(keyA, true, 0ms), QStringList());
    recorder.stop(1ms);
    QVERIFY(!recorder.recorded(0));
}

void MacroRecorderTest::staysWithinItsCapacity()
{
    for (int capacity = 0; capacity <= 9; ++capacity) {
        MacroRecorder recorder = started(false, capacity);
        for (int round = 0; round < 10; ++round) {
            (void)recorder.record(keyA, true, 0ms);
            (void)recorder.record(keyB, true, 0ms);
            (void)recorder.record(keyA, false, 0ms);
            if (round % 2 == 0)
                (void)recorder.record(keyB, false, 0ms);
        }
        recorder.stop(0ms);
        const QVariantList events = *recorder.recorded(3);
        QVERIFY(events.size() <= capacity);
        QCOMPARE(events.size(), capacity / 2 * 2); // full, as far as pairs fit
        QMap<uint, int> down;
        for (const QVariant &entry : events) {
            const MacroRecord::Event event = MacroRecord::eventFields(entry.toMap());
            down[event.argument] += event.command == MacroRecord::keyDown ? 1 : -1;
        }
        for (const int count : std::as_const(down))
            QCOMPARE(count, 0); // no recording ends in mid-press
    }
}

void MacroRecorderTest::recordingBelongsToOneMacro()
{
    MacroRecorder recorder = started();
    QVERIFY(!recorder.recorded(3)); // the recording continues
    recorder.stop(0ms);
    QVERIFY(!recorder.recorded(4));
    QVERIFY(recorder.recorded(3));
}

void MacroRecorderTest::recordingStaysUntilItIsDiscarded()
{
    MacroRecorder recorder = started();
    recorder.stop(0ms);
    QVERIFY(recorder.recorded(3));
    QVERIFY(recorder.recorded(3));
    recorder.discard();
    QVERIFY(!recorder.recorded(3));
}

void MacroRecorderTest::newStartForgetsTheOldRecording()
{
    MacroRecorder recorder = started();
    (void)recorder.record(keyA, true, 0ms);
    recorder.start({.macroId = 4, .capacity = 10, .followsEvents = false, .firstDelayMs = 0});
    QCOMPARE(recorder.record(keyA, false, 1ms), QStringList());
    recorder.stop(2ms);
    QCOMPARE(recorder.recorded(4), std::optional(QVariantList()));
    QVERIFY(!recorder.recorded(3));
}

void MacroRecorderTest::equalTimesGiveNoPause()
{
    MacroRecorder recorder = started();
    (void)recorder.record(keyA, true, 500ms);
    (void)recorder.record(keyA, false, 400ms); // never negative, regardless of the clock
    recorder.stop(400ms);
    QCOMPARE(recorder.recorded(3)->at(1).toMap().value(u"delay"_s), QVariant(0));
}

/// A keyboard that repeats a held key must not fill the macro with presses.
void MacroRecorderTest::heldKeyIsPressedOnce()
{
    MacroRecorder recorder = started();
    (void)recorder.record(keyA, true, 0ms);
    QCOMPARE(recorder.record(keyA, true, 30ms), QStringList());
    QCOMPARE(recorder.record(keyA, false, 60ms), QStringList({u"0.060 seconds delay\n"_s, u"Key Release A"_s}));
    recorder.stop(60ms);
    QCOMPARE(recorder.recorded(3)->size(), 2);
}

QTEST_APPLESS_MAIN(MacroRecorderTest)
#include "macrorecordertest.moc"
