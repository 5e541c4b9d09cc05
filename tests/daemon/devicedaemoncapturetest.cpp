// SPDX-License-Identifier: MIT
// Keys that reach a client instead of the computer: recorded macros and single keys.
#include "base/document.h"
#include "macros/macrorecord.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace DaemonTestDocuments;

class DeviceDaemonCaptureTest : public DeviceDaemonFixture
{
    Q_OBJECT

private Q_SLOTS:
    void recordsAMacro();
    void appendsToAMacro();
    void recordingWithoutEventsLeavesTheMacro_data();
    void recordingWithoutEventsLeavesTheMacro();
    void savingWithoutRecordingChangesNothing();
    void recordingFollowsItsMacroWhenRowsMove();
    void unsavedRecordingSurvivesAFullDisk();
    void capturesSingleKeys();
    void capturesKeysForAnEditedEvent();
    void capturedKeysDoNotReachTheComputer();
    void captureNeedsAClientAndAKeyboard();
    void captureEndsWithItsClient();
    void captureEndsWithRelease();
    void changeOfTheCaptureIsLoggedWithItsCause();
    void stopOfAnotherCaptureEndsNothing_data();
    void stopOfAnotherCaptureEndsNothing();
    void endOfACaptureEndsTheRecordingOfItsClient();
    void appendedRecordingStaysWithinTheMacro();
    void recordingStaysWithinTheEventsOfAllMacros_data();
    void recordingStaysWithinTheEventsOfAllMacros();
};

void DeviceDaemonCaptureTest::recordsAMacro()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    press(4);
    mNow += 15ms;
    release(4);
    QCOMPARE(mNotifications.size(), 2);
    QCOMPARE(mNotifications.at(0).to, u"MacroSequence271"_s);
    QCOMPARE(mNotifications.at(0).values, (QVariantMap{{u"messagesArray"_s, QStringList{u"Key Press A"_s}}}));
    QCOMPARE(mNotifications.at(1).values,
             (QVariantMap{{u"messagesArray"_s, QStringList{u"0.015 seconds delay\n"_s, u"Key Release A"_s}}}));
    QCOMPARE(mDaemon->document(), startDocument()); // stored only on request
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    press(5);
    QCOMPARE(mNotifications.size(), 2);
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(replyTo(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 1}})
                 .values.value(u"MacroSequences"_s)
                 .toStringList(),
             QStringList({u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s}));
    QCOMPARE(storedDocument(), mDaemon->document());
}

void DeviceDaemonCaptureTest::appendsToAMacro()
{
    recordsAMacro();
    mNotifications.clear();
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 1}}), 0);
    press(6);
    QCOMPARE(notification(u"MacroSequence271"_s).value(u"messagesArray"_s).toStringList(),
             QStringList({u"0.020 seconds delay\n"_s, u"Key Press C"_s}));
    release(6);
    // Saving also ends a recording that the client did not stop.
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 1}}), 0);
    QCOMPARE(replyTo(Command::readMacroLines, {{u"IndexOfMacroSequence"_s, 1}})
                 .values.value(u"MacroSequences"_s)
                 .toStringList(),
             QStringList({u"Key Press A"_s, u"0.015 seconds delay\n"_s, u"Key Release A"_s, u"0.020 seconds delay\n"_s,
                          u"Key Press C"_s, u"0.000 seconds delay\n"_s, u"Key Release C"_s}));
}

void DeviceDaemonCaptureTest::recordingWithoutEventsLeavesTheMacro_data()
{
    QTest::addColumn<int>("isAppended");
    QTest::newRow("new recording") << 0;
    QTest::newRow("appended recording") << 1;
}

void DeviceDaemonCaptureTest::recordingWithoutEventsLeavesTheMacro()
{
    QFETCH(int, isAppended);
    recordsAMacro();
    const QVariantMap before = mDaemon->document();
    mNotifications.clear();
    const QVariantMap request{{u"macroID"_s, 1}, {u"isAppendRecording"_s, isAppended}};
    QCOMPARE(statusOf(Command::startMacroRecording, request), 0);
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    QCOMPARE(statusOf(Command::saveRecordedEvents, request), 0);
    QCOMPARE(mDaemon->document(), before);
    QCOMPARE(takeNotificationNames(), QStringList());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nothing recorded"_s));
    QCOMPARE(statusOf(Command::saveRecordedEvents, request), static_cast<int>(Status::nothingRecorded));
}

void DeviceDaemonCaptureTest::savingWithoutRecordingChangesNothing()
{
    recordsAMacro();
    const QVariantMap before = mDaemon->document();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nothing recorded"_s));
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}),
             static_cast<int>(Status::nothingRecorded));
    QCOMPARE(mDaemon->document(), before);
}

void DeviceDaemonCaptureTest::recordingFollowsItsMacroWhenRowsMove()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 1}, {u"isAppendRecording"_s, 0}}), 0);
    press(4);
    release(4);
    QCOMPARE(statusOf(Command::stopMacroRecording), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nothing recorded"_s));
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}),
             static_cast<int>(Status::nothingRecorded));
    QCOMPARE(statusOf(Command::deleteMacro, {{u"macroID"_s, 0}}), 0);
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(MacroRecord::events(Document(mDaemon->document()).macros().first().toMap()).size(), 2);
}

void DeviceDaemonCaptureTest::unsavedRecordingSurvivesAFullDisk()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    press(4);
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"not saved"_s));
        QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}),
                 static_cast<int>(Status::notSaved));
    }
    QCOMPARE(statusOf(Command::saveRecordedEvents, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(MacroRecord::events(Document(mDaemon->document()).macros().first().toMap()).size(), 2);
}

void DeviceDaemonCaptureTest::capturesSingleKeys()
{
    press(225);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    press(224);
    press(6);
    release(224);
    press(7);
    const auto captured = [](int key, int modifiers) {
        return QVariantMap{{u"singleKey"_s, key}, {u"singleKeyModif"_s, modifiers}};
    };
    QCOMPARE(mNotifications.size(), 3);
    QCOMPARE(mNotifications.at(0).to, u"SingleKeyEvent271"_s);
    QCOMPARE(mNotifications.at(0).values, captured(224, 0x02)); // is not a modifier of itself
    QCOMPARE(mNotifications.at(1).values, captured(6, 0x03));
    QCOMPARE(mNotifications.at(2).values, captured(7, 0x02));
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    press(8);
    QCOMPARE(mNotifications.size(), 3);
}

void DeviceDaemonCaptureTest::capturesKeysForAnEditedEvent()
{
    QCOMPARE(statusOf(Command::startEditHid), 0);
    press(225);
    QCOMPARE(mNotifications.size(), 1);
    QCOMPARE(mNotifications.at(0).to, u"SingleKeyEvent1048"_s);
    QCOMPARE(mNotifications.at(0).values, (QVariantMap{{u"singleKey"_s, 225}, {u"singleKeyModif"_s, 0}}));
    QVERIFY(mKeyboard->press(9, 1)); // a mouse button is not a key
    QCOMPARE(mNotifications.size(), 1);
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    press(8);
    QCOMPARE(mNotifications.size(), 1);
}

void DeviceDaemonCaptureTest::capturedKeysDoNotReachTheComputer()
{
    press(4);
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    press(5);
    release(4);
    release(5);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s}));
    press(6);
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    release(6);
    press(6);
    QCOMPARE(mSent, QStringList({u"+4"_s, u"-4"_s, u"+6"_s}));
}

void DeviceDaemonCaptureTest::captureNeedsAClientAndAKeyboard()
{
    const QVariantMap recording{{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}};
    const QList<std::pair<Command, QVariantMap>> captures{
        {Command::startMacroRecording, recording}, {Command::startEditHid, {}}, {Command::startSingleKeyRecording, {}}};
    for (const auto &[command, request] : captures) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"malformed request"_s));
        send(command, request, QString());
        press(4);
        QCOMPARE(mSent.takeLast(), u"+4"_s); // not captured
        release(4);
    }
    mKeyboard->remove();
    for (const auto &[command, request] : captures) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"device absent"_s));
        QCOMPARE(statusOf(command, request), static_cast<int>(Status::deviceAbsent));
    }
    mKeyboard->attach();
    for (const QVariantMap &request : {QVariantMap{{u"macroID"_s, 2}, {u"isAppendRecording"_s, 0}},
                                       QVariantMap{{u"macroID"_s, -1}, {u"isAppendRecording"_s, 0}}}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"index out of range"_s));
        QCOMPARE(statusOf(Command::startMacroRecording, request), static_cast<int>(Status::indexOutOfRange));
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"malformed request"_s));
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}}), static_cast<int>(Status::malformedRequest));
    QCOMPARE(mWatchedClient, QString());
}

void DeviceDaemonCaptureTest::captureEndsWithItsClient()
{
    QCOMPARE(statusOf(Command::startSingleKeyRecording), 0);
    QCOMPARE(mWatchedClient, client);
    mDaemon->clientVanished(u"SomebodyElse"_s);
    press(4);
    QCOMPARE(mSent, QStringList());
    mDaemon->clientVanished(client);
    QCOMPARE(mWatchedClient, QString());
    press(5);
    QCOMPARE(mSent, QStringList{u"+5"_s});
}

void DeviceDaemonCaptureTest::captureEndsWithRelease()
{
    QCOMPARE(statusOf(Command::startMacroRecording, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    mReplies.clear();
    send(Command::releaseDevice, {}, QString());
    QVERIFY(mReplies.isEmpty());
    press(5);
    QCOMPARE(mSent, QStringList{u"+5"_s});
}

void DeviceDaemonCaptureTest::changeOfTheCaptureIsLoggedWithItsCause()
{
    const QVariantMap recording{{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}};
    QTest::ignoreMessage(QtInfoMsg, "not capturing, a client asks for keys: capturing a single key");
    send(Command::startSingleKeyRecording);
    QTest::ignoreMessage(QtInfoMsg, "capturing a single key, a client asks for keys: capturing a key for an event");
    send(Command::startEditHid);
    QTest::ignoreMessage(QtInfoMsg, "capturing a key for an event, a client starts a recording: recording a macro");
    send(Command::startMacroRecording, recording);
    QTest::ignoreMessage(QtInfoMsg, "recording a macro, the Macro key is pressed: left alone");
    pressMacroKey();
    QTest::ignoreMessage(QtInfoMsg, "recording a macro, the client stops the recording: not capturing");
    send(Command::stopMacroRecording);
}

void DeviceDaemonCaptureTest::stopOfAnotherCaptureEndsNothing_data()
{
    QTest::addColumn<Command>("start");
    QTest::addColumn<Command>("stop");
    QTest::newRow("single key") << Command::startSingleKeyRecording << Command::stopMacroRecording;
    QTest::newRow("edited event") << Command::startEditHid << Command::stopMacroRecording;
}

void DeviceDaemonCaptureTest::stopOfAnotherCaptureEndsNothing()
{
    QFETCH(Command, start);
    QFETCH(Command, stop);
    QCOMPARE(statusOf(start, {{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}}), 0);
    QCOMPARE(statusOf(stop), 0);
    press(4);
    QCOMPARE(mSent, QStringList());
    QCOMPARE(mWatchedClient, client);
}

void DeviceDaemonCaptureTest::endOfACaptureEndsTheRecordingOfItsClient()
{
    const QVariantMap recording{{u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}};
    QCOMPARE(statusOf(Command::startMacroRecording, recording), 0);
    // Neither a capture of another client nor one without a port.
    for (const QString &port : {u"AnotherReplyPort"_s, QString()}) {
        send(Command::stopSingleKeyRecording, {}, port);
        press(4);
        release(4);
        QCOMPARE(mSent, QStringList());
    }
    QCOMPARE(statusOf(Command::stopSingleKeyRecording), 0);
    QCOMPARE(mWatchedClient, QString());
    press(5);
    QVERIFY(!mSent.isEmpty());
    // The recorded events are still there.
    release(5);
    QCOMPARE(statusOf(Command::saveRecordedEvents, recording), 0);
    QVERIFY(!MacroRecord::events(Document(mDaemon->document()).macros().first().toMap()).isEmpty());
}

void DeviceDaemonCaptureTest::appendedRecordingStaysWithinTheMacro()
{
    const QVariantMap event = MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 29});
    QVariantList macros = Document(mDaemon->document()).macros();
    macros[1] = MacroRecord::withEvents(macros.at(1).toMap(), QVariantList(MacroRecord::maximumEvents - 2, event));
    start(SettingsDocument::withMacros(mDaemon->document(), macros));
    const QVariantMap request{{u"macroID"_s, 1}, {u"isAppendRecording"_s, 1}};
    QCOMPARE(statusOf(Command::startMacroRecording, request), 0);
    for (const int key : {4, 5}) {
        press(key);
        release(key);
    }
    QCOMPARE(statusOf(Command::saveRecordedEvents, request), 0);
    const QVariantList events = MacroRecord::events(Document(mDaemon->document()).macros().at(1).toMap());
    QCOMPARE(events.size(), MacroRecord::maximumEvents);
    QCOMPARE(MacroRecord::eventFields(events.last().toMap()).argument, 4);
}

void DeviceDaemonCaptureTest::recordingStaysWithinTheEventsOfAllMacros_data()
{
    QTest::addColumn<int>("append");
    QTest::newRow("new") << 0;
    QTest::newRow("appended") << 1;
}

void DeviceDaemonCaptureTest::recordingStaysWithinTheEventsOfAllMacros()
{
    QFETCH(int, append);
    const QVariantMap event = MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 29});
    const auto ofSize = [&event](int events) {
        return MacroRecord::withEvents({{u"MacroName"_s, u"Long"_s}}, QVariantList(events, event));
    };
    const int kept = append == 1 ? 3 : 0;
    QVariantList macros{ofSize(append == 1 ? kept : 2)}; // the others leave room for two more than are kept
    for (int left = MacroRecord::maximumTotalEvents - kept - 2; left > 0; left -= MacroRecord::maximumEvents)
        macros += ofSize(std::min(left, MacroRecord::maximumEvents));
    start(SettingsDocument::completed(SettingsDocument::withMacros(mDaemon->document(), macros)));
    const QVariantMap request{{u"macroID"_s, 0}, {u"isAppendRecording"_s, append}};
    QCOMPARE(statusOf(Command::startMacroRecording, request), 0);
    for (const int key : {4, 5}) {
        press(key);
        release(key);
    }
    QCOMPARE(statusOf(Command::saveRecordedEvents, request), 0);
    const QVariantList events = MacroRecord::events(Document(mDaemon->document()).macro(0));
    QCOMPARE(events.size(), kept + 2);
    QCOMPARE(MacroRecord::eventFields(events.last().toMap()).argument, 4);
}

QTEST_GUILESS_MAIN(DeviceDaemonCaptureTest)
#include "devicedaemoncapturetest.moc"
