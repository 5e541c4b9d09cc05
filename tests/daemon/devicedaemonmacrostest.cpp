// SPDX-License-Identifier: MIT
// Macros that keys play, and the events that stop them.
#include "base/document.h"
#include "macros/macrorecord.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/testmain.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace DaemonTestDocuments;

class DeviceDaemonMacrosTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void keyPlaysAMacroAtItsTimes();
    void macroMayBeLateButDoesNotDrift();
    void changeStopsTheMacrosItConcerns_data();
    void changeStopsTheMacrosItConcerns();
    void recordingStopsMacrosAndDoesNotHearThem();
    void macroIsStoppedWhenItsKeySwitchesAway();
    void impossibleMacrosAreRefused_data();
    void impossibleMacrosAreRefused();
};

void DeviceDaemonMacrosTest::keyPlaysAMacroAtItsTimes()
{
    startWithMacros();
    press(59);
    QCOMPARE(mSent, QStringList());
    passTime(9999us);
    QCOMPARE(mSent, QStringList());
    passTime(10ms);
    QCOMPARE(mSent, QStringList{u"+5"_s});
    passTime(31ms);
    QCOMPARE(mSent, (QStringList{u"+5"_s, u"-5"_s, u"+5"_s}));
    release(59);
    QCOMPARE(mSent, (QStringList{u"+5"_s, u"-5"_s, u"+5"_s, u"-5"_s}));
    QVERIFY(!mWakeTime); // no wake-up is pending
}

void DeviceDaemonMacrosTest::macroMayBeLateButDoesNotDrift()
{
    startWithMacros();
    press(58);
    release(58);
    QRandomGenerator random(58);
    for (int event = 1; event <= 1000; ++event) {
        QVERIFY(mWakeTime);
        QCOMPARE(mWakeTime->count(), event * 10'000);
        mNow = *mWakeTime + std::chrono::microseconds(random.bounded(3000));
        mKeyboard->keys().wake();
        QCOMPARE(mSent.size(), event);
    }
    press(58);
    QVERIFY(mKeyboard->sentKeys().isEmpty());
}

void DeviceDaemonMacrosTest::changeStopsTheMacrosItConcerns_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<bool>("stopsFirst");
    QTest::addColumn<bool>("stopsSecond");
    const auto row = [](const char *name, Command command, const QVariantMap &request, bool first, bool second) {
        QTest::newRow(name) << static_cast<int>(command) << request << first << second;
    };
    const QVariantMap event = MacroRecord::eventRecord({.command = 1, .delayMs = 1, .argument = 6});
    row("edit an event", Command::updateEvent, {{u"macroID"_s, 0}, {u"sequenceIdx"_s, 0}, {u"sequence"_s, event}}, true,
        false);
    row("remove an event", Command::removeEvent, {{u"macroID"_s, 1}, {u"macroEventTableIndex"_s, 0}}, false, true);
    row("remove all events", Command::removeAllEvents, {{u"macroID"_s, 0}}, true, false);
    row("set a delay", Command::setDelay, {{u"macroID"_s, 1}, {u"sequenceIdx"_s, 1}, {u"delay"_s, 5}}, false, true);
    row("set all delays", Command::setAllDelays, {{u"macroID"_s, 0}, {u"delay"_s, 0}, {u"HasNoDelay"_s, true}}, true,
        false);
    row("delete the first", Command::deleteMacro, {{u"macroID"_s, 0}}, true, false);
    row("delete the second", Command::deleteMacro, {{u"macroID"_s, 1}}, false, true);
    row("rename", Command::renameMacro,
        {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"X"_s}, {u"macroID"_s, 0}}}}, false, false);
    row("add a macro", Command::addMacro, {{u"MacroContents"_s, QVariantMap{{u"MacroName"_s, u"X"_s}}}}, false, false);
    row("switch the profile", Command::switchProfile, {{u"ProfileID"_s, 1}}, true, true);
    row("switch to the same profile", Command::switchProfile, {{u"ProfileID"_s, 0}}, false, false);
    row("assign the first key anew", Command::updateProfile,
        {{u"ProfileID"_s, 0},
         {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"59"_s, macroEntry(1, 255)}}}}}},
        true, false);
    row("read", Command::readSettings, {}, false, false);
    row("a change that is refused", Command::deleteMacro, {{u"macroID"_s, 9}}, false, false);
    row("record", Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}, true, true);
    row("capture", Command::startSingleKeyRecording, {}, true, true);
}

void DeviceDaemonMacrosTest::changeStopsTheMacrosItConcerns()
{
    QFETCH(int, command);
    QFETCH(QVariantMap, request);
    QFETCH(bool, stopsFirst);
    QFETCH(bool, stopsSecond);
    QLoggingCategory::setFilterRules(u"kestra.*=false"_s);
    startWithMacros();
    press(58);
    release(58);
    press(59);
    passTime(15ms);
    QCOMPARE(mSent, (QStringList{u"+4"_s, u"+5"_s}));
    mSent.clear();
    // The macro stops before the reply reports the change.
    QStringList sentBeforeReply;
    mOnReply = [&] { sentBeforeReply = mSent; };
    send(static_cast<Command>(command), request);
    mOnReply = {};
    QStringList expected;
    if (stopsFirst)
        expected += u"-4"_s;
    if (stopsSecond)
        expected += u"-5"_s;
    QCOMPARE(sentBeforeReply, expected);
    mSent.clear();
    passTime(25ms);
    QCOMPARE(mSent.contains(u"-4"_s), !stopsFirst);
    QCOMPARE(mSent.contains(u"-5"_s), !stopsSecond);
    release(59);
    mKeyboard->remove();
    QVERIFY(mKeyboard->sentKeys().isEmpty());
    QLoggingCategory::setFilterRules(QString());
}

void DeviceDaemonMacrosTest::recordingStopsMacrosAndDoesNotHearThem()
{
    startWithMacros();
    press(58);
    release(58);
    passTime(15ms);
    send(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}});
    QCOMPARE(mSent, (QStringList{u"+4"_s, u"-4"_s}));
    takeNotificationNames();
    passTime(1s);
    QCOMPARE(takeNotificationNames(), QStringList());
    QCOMPARE(mSent.size(), 2);
}

void DeviceDaemonMacrosTest::macroIsStoppedWhenItsKeySwitchesAway()
{
    startWithMacros();
    press(59);
    passTime(15ms);
    press(60);
    QCOMPARE(Document(mDaemon->document()).activeProfileIndex(), 1);
    QCOMPARE(mSent, (QStringList{u"+5"_s, u"-5"_s}));
    passTime(1s);
    release(60);
    release(59);
    QCOMPARE(mSent.size(), 2);
}

void DeviceDaemonMacrosTest::impossibleMacrosAreRefused_data()
{
    QTest::addColumn<QVariant>("contents");
    QTest::addColumn<int>("status");
    const auto named = [](const QVariant &sequence) {
        return QVariant(QVariantMap{{u"MacroName"_s, u"X"_s}, {u"sequence"_s, sequence}});
    };
    const auto withEvents = [&](const QVariant &events) { return named(QVariantMap{{u"Events"_s, events}}); };
    QTest::newRow("no dictionary") << QVariant(5) << 2;
    QTest::newRow("name that is no text") << QVariant(QVariantMap{{u"MacroName"_s, 5}}) << 2;
    QTest::newRow("sequence that is an array") << named(QVariantList{1}) << 2;
    QTest::newRow("events that are text") << withEvents(u"A"_s) << 2;
    QTest::newRow("event that is text") << withEvents(QVariantList{u"A"_s}) << 2;
    QTest::newRow("delay that is text") << withEvents(QVariantList{QVariantMap{{u"delay"_s, u"soon"_s}}}) << 2;
    QTest::newRow("one event too many") << withEvents(
        QVariantList(MacroRecord::maximumEvents + 1, QVariant(QVariantMap())))
                                        << 4;
    QTest::newRow("900 000 events") << withEvents(QVariantList(900'000, QVariant(QVariantMap()))) << 4;
    // Stored unchanged: the engine does not play events that it does not know.
    QTest::newRow("another page") << withEvents(QVariantList{MacroRecord::eventRecord({.page = 12})}) << 0;
    QTest::newRow("no such key") << withEvents(QVariantList{MacroRecord::eventRecord({.argument = 4000})}) << 0;
    QTest::newRow("negative delay") << withEvents(QVariantList{MacroRecord::eventRecord({.delayMs = -1})}) << 0;
    QTest::newRow("another key of the sequence") << named(QVariantMap{{u"MacroEvents"_s, QVariantList{1, 2}}}) << 0;
}

void DeviceDaemonMacrosTest::impossibleMacrosAreRefused()
{
    QFETCH(QVariant, contents);
    QFETCH(int, status);
    startWithMacros();
    const QVariantMap before = mDaemon->document();
    if (status != 0)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"request 32"_s));
    QCOMPARE(statusOf(Command::addMacro, {{u"MacroContents"_s, contents}}), status);
    if (status != 0) {
        QVERIFY(mDaemon->document() == before);
        return;
    }
    QVariantMap stored = Document(mDaemon->document()).macros().constLast().toMap();
    stored.remove(u"macroID"_s);
    QCOMPARE(stored, contents.toMap());
    send(Command::updateProfile,
         {{u"ProfileID"_s, 0},
          {u"DeviceSettingsDictionary"_s, QVariantMap{{u"Keys"_s, QVariantMap{{u"4"_s, keyEntry(10, 2)}}}}}});
    press(4);
    passTime(1s);
    release(4);
    QCOMPARE(mSent, QStringList());
}

QTEST_GUILESS_MAIN(DeviceDaemonMacrosTest)
#include "devicedaemonmacrostest.moc"
