// SPDX-License-Identifier: MIT
// The activity of the tab as its fields describe it: after each step of the user, and at each request on the way.
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QMetaEnum>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace MacrosTesting;

class MacrosActivityTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutAnActivity();
    void fieldsFollowEachStep_data();
    void fieldsFollowEachStep();
    void activityFollowsEachStep_data();
    void activityFollowsEachStep();
    void appendedRecordingIsStoppingUntilItIsSaved();
    void takesEventsOnlyWhileARecordingRuns_data();
    void takesEventsOnlyWhileARecordingRuns();
    void recordingEndsOnceWhenItsMacroGoesMeanwhile();
    void announcesEachCapture_data();
    void announcesEachCapture();
    void fetchesTheLinesOnceAfterTheRecording();

private:
    static void addRowsOfRecordings();
    static void addRowsOfAppendedRecordings();
    static void addRowsOfTheEventSheet();
    static void addRowsAfterCancel();
    [[nodiscard]] QString activity() const;
    /// The fields that are set, and "Stop" while the record button reads so.
    [[nodiscard]] QString state() const;
    /// Carries out one step and returns the requests and the step itself, each with the state at that time.
    [[nodiscard]] QStringList traceOf(const QString &step);
    void take(const QString &step);
    void takeAtKeyboardOrTab(const QString &step);
    void editFirstEvent();
    void loseMacro();
};

QString MacrosActivityTest::activity() const
{
    return QString::fromLatin1(
        QMetaEnum::fromType<KeyboardMacrosController::Activity>().key(int(mController->activity())));
}

QString MacrosActivityTest::state() const
{
    using Tab = KeyboardMacrosController;
    static const QList<std::pair<QString, bool (Tab::*)() const>> fields{
        {u"mIsRecording"_s, &Tab::isRecording},           {u"mIsAppendMacro"_s, &Tab::isAppendMacro},
        {u"mIsStopRecording"_s, &Tab::isStopRecording},   {u"mIsEditingMacro"_s, &Tab::isEditingMacro},
        {u"mIsMacroEventEdit"_s, &Tab::isMacroEventEdit}, {u"Stop"_s, &Tab::recordButtonReadsStop}};
    QStringList set;
    for (const auto &[name, isSet] : fields) {
        if ((mController.get()->*isSet)())
            set += name;
    }
    return set.join(u' ');
}

QStringList MacrosActivityTest::traceOf(const QString &step)
{
    QStringList trace;
    mDelegate->duringCall = [&](const QString &call) { trace += u"%1: %2"_s.arg(call, state()); };
    take(step);
    mDelegate->duringCall = {};
    trace += u"%1: %2"_s.arg(step, state());
    return trace;
}

void MacrosActivityTest::take(const QString &step)
{
    if (step == "Record"_L1 || step == "Stop"_L1)
        outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    else if (step == "Add"_L1)
        outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    else if (step == "Edit"_L1)
        editFirstEvent();
    else if (step == "OK"_L1)
        outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    else if (step == "Cancel"_L1)
        outlet<QPushButton>(u"mMacroEventEditCancel"_s)->click();
    else
        takeAtKeyboardOrTab(step);
}

void MacrosActivityTest::editFirstEvent()
{
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
}

void MacrosActivityTest::loseMacro()
{
    mDelegate->macros.clear();
    mDelegate->refresh();
}

void MacrosActivityTest::takeAtKeyboardOrTab(const QString &step)
{
    if (step == "key"_L1)
        mController->singleKeyEvents({{u"singleKey"_s, 5}, {u"singleKeyModif"_s, 0}});
    else if (step == "leave"_L1)
        mController->checkMacroRecordingStatus(u"Keys"_s);
    else if (step == "enter"_L1)
        mController->checkMacroRecordingStatus(u"Macros"_s);
    else if (step == "unplug"_L1)
        mController->setControlsState(false);
    else if (step == "back"_L1)
        mController->keyboardCameBack();
    else if (step == "record without a macro"_L1)
        mController->clickRecordMacroDetails(nullptr);
    else if (step == "macro goes"_L1)
        loseMacro();
    else
        QFAIL(qPrintable(u"unknown step "_s + step));
}

void MacrosActivityTest::startsWithoutAnActivity()
{
    fill({u"A"_s}, 0);
    QCOMPARE(state(), QString());
    QCOMPARE(activity(), u"idle"_s);
}

void MacrosActivityTest::fieldsFollowEachStep_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("trace"); // of the last step
    addRowsOfRecordings();
    addRowsOfAppendedRecordings();
    addRowsOfTheEventSheet();
    addRowsAfterCancel();
}

void MacrosActivityTest::addRowsOfRecordings()
{
    QTest::newRow("Record") << QStringList{u"Record"_s}
                            << QStringList{u"start 0 0: mIsRecording Stop"_s, u"Record: mIsRecording Stop"_s};
    QTest::newRow("Stop") << QStringList{u"Record"_s, u"Stop"_s}
                          << QStringList{u"stop: mIsStopRecording"_s, u"save 0 0: mIsStopRecording"_s,
                                         u"details 0: mIsStopRecording"_s, u"Stop: mIsStopRecording"_s};
    QTest::newRow("Record after Stop") << QStringList{u"Record"_s, u"Stop"_s, u"Record"_s}
                                       << QStringList{u"start 0 0: mIsRecording Stop"_s,
                                                      u"Record: mIsRecording Stop"_s};
    QTest::newRow("the tab is left while recording")
        << QStringList{u"Record"_s, u"leave"_s}
        << QStringList{u"stop: mIsStopRecording"_s, u"save 0 0: mIsStopRecording"_s, u"details 0: mIsStopRecording"_s,
                       u"leave: mIsStopRecording"_s};
    QTest::newRow("the keyboard comes back while recording")
        << QStringList{u"Record"_s, u"back"_s}
        << QStringList{u"stop: mIsStopRecording"_s, u"save 0 0: mIsStopRecording"_s, u"details 0: mIsStopRecording"_s,
                       u"back: mIsStopRecording"_s};
    QTest::newRow("the macro goes while recording")
        << QStringList{u"Record"_s, u"macro goes"_s}
        << QStringList{u"stop: mIsStopRecording"_s, u"macro goes: mIsStopRecording"_s};
    QTest::newRow("the tab is entered while recording")
        << QStringList{u"Record"_s, u"enter"_s} << QStringList{u"enter: mIsStopRecording"_s};
    QTest::newRow("the tab is entered while the keyboard is gone")
        << QStringList{u"Record"_s, u"unplug"_s, u"enter"_s} << QStringList{u"enter: mIsRecording"_s};
    QTest::newRow("Record without a macro") << QStringList{u"Record"_s, u"macro goes"_s, u"record without a macro"_s}
                                            << QStringList{u"record without a macro: "_s};
}

/// The field stays set until the recording is saved.
void MacrosActivityTest::addRowsOfAppendedRecordings()
{
    QTest::newRow("Add") << QStringList{u"Add"_s}
                         << QStringList{u"start 1 0: mIsAppendMacro Stop"_s, u"Add: mIsAppendMacro Stop"_s};
    QTest::newRow("Stop after Add") << QStringList{u"Add"_s, u"Stop"_s}
                                    << QStringList{u"stop: mIsAppendMacro mIsStopRecording"_s,
                                                   u"save 0 1: mIsAppendMacro mIsStopRecording"_s,
                                                   u"details 0: mIsAppendMacro mIsStopRecording"_s,
                                                   u"Stop: mIsStopRecording"_s};
    QTest::newRow("the macro goes while events are appended")
        << QStringList{u"Add"_s, u"macro goes"_s}
        << QStringList{u"stop: mIsStopRecording"_s, u"macro goes: mIsStopRecording"_s};
    QTest::newRow("the tab is entered while events are appended")
        << QStringList{u"Add"_s, u"enter"_s} << QStringList{u"enter: mIsAppendMacro mIsStopRecording"_s};
    QTest::newRow("Record after that") << QStringList{u"Add"_s, u"enter"_s, u"Record"_s}
                                       << QStringList{u"start 1 0: mIsRecording mIsAppendMacro Stop"_s,
                                                      u"Record: mIsRecording mIsAppendMacro Stop"_s};
}

void MacrosActivityTest::addRowsOfTheEventSheet()
{
    QTest::newRow("Edit") << QStringList{u"Edit"_s}
                          << QStringList{u"event 0 0: "_s, u"startEditHID: mIsEditingMacro mIsMacroEventEdit"_s,
                                         u"Edit: mIsEditingMacro mIsMacroEventEdit Stop"_s};
    QTest::newRow("Edit after a recording")
        << QStringList{u"Record"_s, u"Stop"_s, u"Edit"_s}
        << QStringList{u"event 0 0: mIsStopRecording"_s,
                       u"startEditHID: mIsStopRecording mIsEditingMacro mIsMacroEventEdit"_s,
                       u"Edit: mIsStopRecording mIsEditingMacro mIsMacroEventEdit Stop"_s};
    QTest::newRow("a key for the sheet") << QStringList{u"Edit"_s, u"key"_s}
                                         << QStringList{u"key: mIsEditingMacro mIsMacroEventEdit Stop"_s};
    QTest::newRow("OK") << QStringList{u"Edit"_s, u"key"_s, u"OK"_s}
                        << QStringList{u"stopKey: Stop"_s, u"event 0 0: Stop"_s, u"update 0 0: Stop"_s,
                                       u"details 0: Stop"_s, u"OK: "_s};
    QTest::newRow("OK without a key") << QStringList{u"Edit"_s, u"OK"_s}
                                      << QStringList{u"stopKey: Stop"_s, u"event 0 0: Stop"_s, u"OK: "_s};
    QTest::newRow("Stop with the sheet") << QStringList{u"Edit"_s, u"Stop"_s}
                                         << QStringList{
                                                u"stopKey: mIsStopRecording mIsEditingMacro mIsMacroEventEdit"_s,
                                                u"Stop: mIsStopRecording"_s};
    QTest::newRow("the keyboard comes back to the sheet")
        << QStringList{u"Edit"_s, u"back"_s}
        << QStringList{u"startEditHID: mIsEditingMacro mIsMacroEventEdit Stop"_s,
                       u"back: mIsEditingMacro mIsMacroEventEdit Stop"_s};
}

/// Cancel leaves the capture to be ended once more.
void MacrosActivityTest::addRowsAfterCancel()
{
    QTest::newRow("Cancel") << QStringList{u"Edit"_s, u"Cancel"_s}
                            << QStringList{u"stopKey: mIsEditingMacro Stop"_s, u"Cancel: mIsEditingMacro"_s};
    QTest::newRow("the keyboard goes, which cancels the sheet")
        << QStringList{u"Edit"_s, u"unplug"_s} << QStringList{u"unplug: mIsEditingMacro"_s};
    QTest::newRow("the tab is left after Cancel")
        << QStringList{u"Edit"_s, u"Cancel"_s, u"leave"_s}
        << QStringList{u"stopKey: mIsStopRecording mIsEditingMacro"_s, u"leave: mIsStopRecording"_s};
    QTest::newRow("Record after Cancel") << QStringList{u"Edit"_s, u"Cancel"_s, u"Record"_s}
                                         << QStringList{u"start 0 0: mIsRecording mIsEditingMacro Stop"_s,
                                                        u"Record: mIsRecording mIsEditingMacro Stop"_s};
    QTest::newRow("Stop after Record after Cancel")
        << QStringList{u"Edit"_s, u"Cancel"_s, u"Record"_s, u"Stop"_s}
        << QStringList{u"stopKey: mIsStopRecording mIsEditingMacro"_s, u"details 0: mIsStopRecording mIsEditingMacro"_s,
                       u"Stop: mIsStopRecording"_s};
    QTest::newRow("Stop after Add after Cancel")
        << QStringList{u"Edit"_s, u"Cancel"_s, u"Add"_s, u"Stop"_s}
        << QStringList{u"stopKey: mIsAppendMacro mIsStopRecording mIsEditingMacro"_s,
                       u"details 0: mIsAppendMacro mIsStopRecording mIsEditingMacro"_s, u"Stop: mIsStopRecording"_s};
    // A late key after Cancel ends the capture; the recording runs on behind a button that reads "Record".
    QTest::newRow("a key after Record after Cancel")
        << QStringList{u"Edit"_s, u"Cancel"_s, u"Record"_s, u"key"_s}
        << QStringList{u"stopKey: mIsRecording Stop"_s, u"key: mIsRecording"_s};
    QTest::newRow("Record after a key after Add after Cancel")
        << QStringList{u"Edit"_s, u"Cancel"_s, u"Add"_s, u"key"_s, u"Record"_s}
        << QStringList{u"start 1 0: mIsRecording mIsAppendMacro Stop"_s, u"Record: mIsRecording mIsAppendMacro Stop"_s};
    QTest::newRow("Stop after that") << QStringList{u"Edit"_s, u"Cancel"_s, u"Add"_s, u"key"_s, u"Record"_s, u"Stop"_s}
                                     << QStringList{u"stop: mIsAppendMacro mIsStopRecording"_s,
                                                    u"save 0 1: mIsAppendMacro mIsStopRecording"_s,
                                                    u"details 0: mIsAppendMacro mIsStopRecording"_s,
                                                    u"Stop: mIsStopRecording"_s};
}

void MacrosActivityTest::fieldsFollowEachStep()
{
    QFETCH(QStringList, steps);
    QFETCH(QStringList, trace);
    fill({u"A"_s}, 0);
    QStringList last;
    for (const QString &step : steps)
        last = traceOf(step);
    QCOMPARE(last, trace);
}

void MacrosActivityTest::activityFollowsEachStep_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("activities"); // after each step
    QTest::newRow("new recording") << QStringList{u"Record"_s, u"Stop"_s} << QStringList{u"recording"_s, u"idle"_s};
    QTest::newRow("appended recording") << QStringList{u"Add"_s, u"Stop"_s} << QStringList{u"appending"_s, u"idle"_s};
    QTest::newRow("the macro goes") << QStringList{u"Add"_s, u"macro goes"_s} << QStringList{u"appending"_s, u"idle"_s};
    QTest::newRow("the tab is left") << QStringList{u"Record"_s, u"leave"_s, u"enter"_s}
                                     << QStringList{u"recording"_s, u"idle"_s, u"idle"_s};
    QTest::newRow("the tab is entered while events are appended")
        << QStringList{u"Add"_s, u"enter"_s, u"Record"_s, u"Stop"_s}
        << QStringList{u"appending"_s, u"stoppingAppended"_s, u"appendingAgain"_s, u"idle"_s};
    QTest::newRow("OK") << QStringList{u"Edit"_s, u"key"_s, u"OK"_s}
                        << QStringList{u"editingEvent"_s, u"editingEvent"_s, u"idle"_s};
    QTest::newRow("Stop with the sheet") << QStringList{u"Edit"_s, u"Stop"_s}
                                         << QStringList{u"editingEvent"_s, u"idle"_s};
    QTest::newRow("the tab is left with the sheet")
        << QStringList{u"Edit"_s, u"leave"_s} << QStringList{u"editingEvent"_s, u"idle"_s};
    QTest::newRow("the keyboard goes and comes back")
        << QStringList{u"Edit"_s, u"unplug"_s, u"back"_s} << QStringList{u"editingEvent"_s, u"idle"_s, u"idle"_s};
    QTest::newRow("recording after Cancel") << QStringList{u"Edit"_s, u"Cancel"_s, u"Record"_s, u"Stop"_s}
                                            << QStringList{u"editingEvent"_s, u"idle"_s, u"recording"_s, u"idle"_s};
    QTest::newRow("late key after Cancel and Add")
        << QStringList{u"Edit"_s, u"Cancel"_s, u"Add"_s, u"key"_s, u"Record"_s, u"Stop"_s}
        << QStringList{u"editingEvent"_s, u"idle"_s, u"appending"_s, u"appending"_s, u"appendingAgain"_s, u"idle"_s};
}

void MacrosActivityTest::activityFollowsEachStep()
{
    QFETCH(QStringList, steps);
    QFETCH(QStringList, activities);
    fill({u"A"_s}, 0);
    QStringList taken;
    for (const QString &step : steps) {
        take(step);
        taken += activity();
    }
    QCOMPARE(taken, activities);
}

void MacrosActivityTest::appendedRecordingIsStoppingUntilItIsSaved()
{
    fill({u"A"_s}, 0);
    take(u"Add"_s);
    QStringList activities;
    mDelegate->duringCall = [&](const QString &call) { activities += u"%1: %2"_s.arg(call, activity()); };
    take(u"Stop"_s);
    QCOMPARE(activities, (QStringList{u"stop: stoppingAppended"_s, u"save 0 1: stoppingAppended"_s,
                                      u"details 0: stoppingAppended"_s}));
}

void MacrosActivityTest::takesEventsOnlyWhileARecordingRuns_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<bool>("takesEvents");
    QTest::newRow("none") << QStringList() << false;
    QTest::newRow("new recording") << QStringList{u"Record"_s} << true;
    QTest::newRow("appended recording") << QStringList{u"Add"_s} << true;
    QTest::newRow("stopped") << QStringList{u"Record"_s, u"Stop"_s} << false;
    QTest::newRow("appended and stopped") << QStringList{u"Add"_s, u"Stop"_s} << false;
    QTest::newRow("event sheet") << QStringList{u"Edit"_s} << false;
    QTest::newRow("cancelled sheet") << QStringList{u"Edit"_s, u"Cancel"_s} << false;
    QTest::newRow("recording after a cancelled sheet") << QStringList{u"Edit"_s, u"Cancel"_s, u"Record"_s} << true;
    QTest::newRow("recording started again") << QStringList{u"Add"_s, u"enter"_s, u"Record"_s} << true;
}

void MacrosActivityTest::takesEventsOnlyWhileARecordingRuns()
{
    QFETCH(QStringList, steps);
    fill({u"A"_s}, 0);
    for (const QString &step : steps)
        take(step);
    const qsizetype before = mController->macroDetailsArray().size();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QTEST(mController->macroDetailsArray().size() > before, "takesEvents");
}

/// Another client deletes the macro, and the answer to the first request of Stop brings the new list.
void MacrosActivityTest::recordingEndsOnceWhenItsMacroGoesMeanwhile()
{
    fill({u"A"_s}, 0);
    take(u"Add"_s);
    QStringList states;
    mDelegate->duringCall = [&](const QString &call) {
        states += u"%1: %2"_s.arg(call, state());
        if (call == "save 0 1"_L1)
            mDelegate->macros.clear(); // gone from the list that the call hands over
    };
    take(u"Stop"_s);
    QCOMPARE(states, (QStringList{u"stop: mIsAppendMacro mIsStopRecording"_s,
                                  u"save 0 1: mIsAppendMacro mIsStopRecording"_s, u"stop: mIsStopRecording"_s}));
    QCOMPARE(state(), u"mIsStopRecording"_s);
    QVERIFY(!mController->isRecordingOrCapturing());
}

void MacrosActivityTest::announcesEachCapture_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QList<bool>>("announced"); // by each step
    QTest::newRow("recording") << QStringList{u"Record"_s, u"Stop"_s} << QList<bool>{true, true};
    QTest::newRow("event sheet") << QStringList{u"Edit"_s, u"key"_s, u"OK"_s} << QList<bool>{true, false, true};
    QTest::newRow("keyboard comes back to the sheet") << QStringList{u"Edit"_s, u"back"_s} << QList<bool>{true, false};
    // A late key must not interrupt the recording; the second Record begins it again in the same area.
    QTest::newRow("recording behind Record") << QStringList{u"Edit"_s, u"Cancel"_s, u"Record"_s, u"key"_s, u"Record"_s}
                                             << QList<bool>{true, true, true, false, true};
}

void MacrosActivityTest::announcesEachCapture()
{
    QFETCH(QStringList, steps);
    fill({u"A"_s}, 0);
    QSignalSpy spy(mController.get(), &KeyboardMacrosController::captureAreaChanged);
    QList<bool> announced;
    for (const QString &step : steps) {
        spy.clear();
        take(step);
        announced += !spy.isEmpty();
    }
    QTEST(announced, "announced");
}

void MacrosActivityTest::fetchesTheLinesOnceAfterTheRecording()
{
    fill({u"A"_s}, 0);
    take(u"Record"_s);
    mDelegate->duringCall = [this](const QString &call) {
        if (call != "save 0 0"_L1)
            return;
        const QVariantMap events{{u"Events"_s, QVariantList{QVariantMap()}}};
        QVariantMap recorded = mDelegate->macros.first().toMap();
        recorded[u"sequence"_s] = events;
        mDelegate->macros.first() = recorded; // the call hands it over
    };
    mDelegate->calls.clear();
    take(u"Stop"_s);
    QCOMPARE(mDelegate->calls.filter(u"details"_s), QStringList{u"details 0"_s});
}

QTEST_MAIN(MacrosActivityTest)
#include "macrosactivitytest.moc"
