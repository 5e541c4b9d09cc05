// SPDX-License-Identifier: MIT
// Macros recorded on the keyboard itself: the recorder, and the changes to the document.
#include "base/document.h"
#include "daemon/capture/ontheflymacro.h"
#include "daemon/capture/ontheflyrecorder.h"
#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using State = OnTheFlyRecorder::State;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr int capacity = 100;

QVariantMap pressOrRelease(int command, int delayMs, int key)
{
    return MacroRecord::eventRecord({command, delayMs, 7, uint(key)});
}

QVariantMap macro(const QString &name, int eventCount = 0)
{
    QVariantList events;
    for (int i = 0; i < eventCount; ++i)
        events += pressOrRelease(1 - i % 2, 1, 4);
    return MacroRecord::withEvents({{u"MacroName"_s, name}, {u"delay"_s, 20}}, events);
}

QVariantMap document(const QVariantList &macros)
{
    const QVariantMap disabled{{u"command"_s, 20}, {u"param1"_s, 0}, {u"param2"_s, 0}, {u"note"_s, u"kept"_s}};
    const QVariantMap profile{{u"ProfileName"_s, u"A"_s}, {u"Keys"_s, QVariantMap{{u"4"_s, disabled}}}};
    return SettingsDocument::completed({{u"Profiles"_s, QVariantList{profile, profile}},
                                        {u"Macros"_s, macros},
                                        {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 1}}}});
}

QVariantMap entryOf(const QVariantMap &whole, int profile, const QString &key)
{
    return Document(whole).profiles().at(profile).toMap().value(u"Keys"_s).toMap().value(key).toMap();
}

} // namespace

class OnTheFlyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsBetweenTwoPressesOfTheMacroKey();
    void recordingWithoutKeysGivesNoMacro();
    void thirdPressDiscardsTheRecording();
    void ignoresKeysWhenOff();
    void endsInEveryState();
    void staysWithinItsCapacity();
    void addsAMacroThatTheKeyPlays();
    void namesEachMacroDifferently();
    void knowsTheRoomForAMacro();
    void refusesMoreMacrosThanTheLimit();
};

void OnTheFlyTest::recordsBetweenTwoPressesOfTheMacroKey()
{
    OnTheFlyRecorder recorder;
    QCOMPARE(recorder.state(), State::off);
    recorder.pressMacroKey(1s, capacity);
    QCOMPARE(recorder.state(), State::recording);
    recorder.keyChanged({.page = 7, .usage = 40}, false, 1s); // was already down
    recorder.keyChanged(keyA, true, 2s);
    recorder.keyChanged(keyA, false, 2s + 15ms);
    recorder.keyChanged({.page = 7, .usage = 5}, true, 2s + 20ms);
    QVERIFY(recorder.events().isEmpty());
    recorder.pressMacroKey(2s + 50ms, capacity);
    QCOMPARE(recorder.state(), State::awaitingKey);
    const QVariantList expected{pressOrRelease(1, 0, 4), pressOrRelease(0, 15, 4), pressOrRelease(1, 5, 5),
                                pressOrRelease(0, 30, 5)};
    QCOMPARE(recorder.events(), expected);
    recorder.keyChanged(keyA, true, 3s);
    QCOMPARE(recorder.events(), expected);
    recorder.end();
    QCOMPARE(recorder.state(), State::off);
    QVERIFY(recorder.events().isEmpty());
}

void OnTheFlyTest::recordingWithoutKeysGivesNoMacro()
{
    OnTheFlyRecorder recorder;
    recorder.pressMacroKey(1s, capacity);
    recorder.keyChanged(keyA, false, 1s);
    recorder.pressMacroKey(2s, capacity);
    QCOMPARE(recorder.state(), State::off);
}

void OnTheFlyTest::thirdPressDiscardsTheRecording()
{
    OnTheFlyRecorder recorder;
    recorder.pressMacroKey(1s, capacity);
    recorder.keyChanged(keyA, true, 1s);
    recorder.pressMacroKey(2s, capacity);
    recorder.pressMacroKey(3s, capacity);
    QCOMPARE(recorder.state(), State::off);
    QVERIFY(recorder.events().isEmpty());
    recorder.pressMacroKey(4s, capacity);
    recorder.pressMacroKey(5s, capacity);
    QCOMPARE(recorder.state(), State::off); // nothing of the first recording remains
}

void OnTheFlyTest::ignoresKeysWhenOff()
{
    OnTheFlyRecorder recorder;
    recorder.keyChanged(keyA, true, 1s);
    recorder.pressMacroKey(1s, capacity);
    recorder.pressMacroKey(2s, capacity);
    QCOMPARE(recorder.state(), State::off);
}

void OnTheFlyTest::endsInEveryState()
{
    OnTheFlyRecorder recorder;
    recorder.end();
    QCOMPARE(recorder.state(), State::off);
    recorder.pressMacroKey(1s, capacity);
    recorder.keyChanged(keyA, true, 1s);
    recorder.end();
    QCOMPARE(recorder.state(), State::off);
    recorder.pressMacroKey(2s, capacity);
    QCOMPARE(recorder.state(), State::recording);
}

void OnTheFlyTest::staysWithinItsCapacity()
{
    OnTheFlyRecorder recorder;
    recorder.pressMacroKey(1s, 4);
    for (int i = 0; i < 10; ++i) {
        recorder.keyChanged(keyA, true, 1s);
        recorder.keyChanged(keyA, false, 1s);
    }
    recorder.pressMacroKey(2s, 4);
    QCOMPARE(recorder.events().size(), 4);
}

void OnTheFlyTest::addsAMacroThatTheKeyPlays()
{
    const QVariantMap before = document({macro(u"Heal"_s)});
    const QVariantList events{pressOrRelease(1, 0, 4), pressOrRelease(0, 15, 4)};
    const CommandOutcome outcome = addOnTheFlyMacro(before, events, 4);
    QCOMPARE(outcome.status, Status::ok);
    QVERIFY(outcome.changesDocument);
    const QVariantList macros = Document(outcome.document).macros();
    QCOMPARE(macros.size(), 2);
    QCOMPARE(macros.first(), Document(before).macros().first());
    QCOMPARE(MacroRecord::events(macros.at(1).toMap()), events);
    QCOMPARE(macros.at(1).toMap().value(u"delay"_s), QVariant(20));
    QVERIFY(macros.at(1).toMap().value(u"macroID"_s).toInt() > 0);
    // Only in the active profile; the other values of the entry remain.
    const QVariantMap expected{{u"command"_s, 10}, {u"param1"_s, 1}, {u"param2"_s, 1}, {u"note"_s, u"kept"_s}};
    QCOMPARE(entryOf(outcome.document, 1, u"4"_s), expected);
    QCOMPARE(entryOf(outcome.document, 0, u"4"_s), entryOf(before, 0, u"4"_s));
    QCOMPARE(Document(outcome.document).activeProfileIndex(), 1);
    QCOMPARE(reasonOf(SettingsDocument::validate(outcome.document)), QString());
    QCOMPARE(SettingsDocument::completed(outcome.document), outcome.document);
}

void OnTheFlyTest::namesEachMacroDifferently()
{
    QVariantMap whole = document({});
    for (const QString &name : {u"On the fly"_s, u"On the fly(2)"_s, u"On the fly(3)"_s}) {
        whole = addOnTheFlyMacro(whole, {pressOrRelease(1, 0, 4)}, 4).document;
        QCOMPARE(Document(whole).macros().last().toMap().value(u"MacroName"_s), QVariant(name));
    }
}

void OnTheFlyTest::knowsTheRoomForAMacro()
{
    QCOMPARE(roomForNewMacro(document({})), MacroRecord::maximumEvents);
    QVariantList macros;
    for (int i = 0; i < 4; ++i)
        macros += macro(QString::number(i), MacroRecord::maximumEvents);
    macros += macro(u"last"_s, MacroRecord::maximumEvents - 7);
    QCOMPARE(roomForNewMacro(document(macros)), 7);
    QVariantList many;
    for (int i = 0; i < MacroRecord::maximumMacros; ++i)
        many += macro(QString::number(i));
    QCOMPARE(roomForNewMacro(document(many)), 0);
    many.removeLast();
    QCOMPARE(roomForNewMacro(document(many)), MacroRecord::maximumEvents);
}

void OnTheFlyTest::refusesMoreMacrosThanTheLimit()
{
    QVariantList many;
    for (int i = 0; i < MacroRecord::maximumMacros; ++i)
        many += macro(QString::number(i));
    const QVariantMap before = document(many);
    const CommandOutcome outcome = addOnTheFlyMacro(before, {pressOrRelease(1, 0, 4)}, 4);
    QCOMPARE(outcome.status, Status::limitReached);
    QCOMPARE(outcome.document, before);
    QVERIFY(!outcome.changesDocument);
}

QTEST_APPLESS_MAIN(OnTheFlyTest)
#include "ontheflytest.moc"
