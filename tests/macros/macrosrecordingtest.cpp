// SPDX-License-Identifier: MIT
// Recording: new and appended, and the events that stop it.
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace MacrosTesting;

class MacrosRecordingTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void recordingStartsEmptyAndDisablesTheRest();
    void stoppingSavesAndReadsTheLines();
    void appendedRecordingKeepsTheLines();
    void newLinesAreAppendedAndShown();
    void linesAfterStopAreIgnored();
    void linesWithoutARecordingAreIgnored_data();
    void linesWithoutARecordingAreIgnored();
    void linesArriveAsNotifications();
    void leavingTheTabStops_data();
    void leavingTheTabStops();
    void enteringTheTabResetsTheRecordButton();
    void stoppingWithoutARecordingDoesNothing();
    void recordingAfterACancelledSheetEndsTheCapture();
    void recordingBelongsToItsMacro_data();
    void recordingBelongsToItsMacro();
    void recordingEndsWithItsRow();
    void stoppingEndsTheEventSheet();
    void anotherKeyboardStopsTheRecording_data();
    void anotherKeyboardStopsTheRecording();
    void recordingDescribesTheWayBackToTheKeyboard_data();
    void recordingDescribesTheWayBackToTheKeyboard();
    void recordingEndsWhenTheKeyboardReturns();
    void windowShortcutsWorkWhileRecording();
    void keysOfTheListsDoNothingWhileRecording();
    void lastRecordedLineIsVisible();
    void captureIsStoppedWithoutSaving_data();
    void captureIsStoppedWithoutSaving();
    void removedKeyboardLeavesEverythingDisabled();
    void recordingNeedsASelectedMacro();
    void recordedLinesAreReadableInADisabledList();
    void linesOfEachRecordingAreAccepted_data();
    void linesOfEachRecordingAreAccepted();
    void enteringTheTabEndsAnotherRecording();
};

void MacrosRecordingTest::recordingStartsEmptyAndDisablesTheRest()
{
    fill({u"A"_s, u"B"_s}, 1);
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    QCOMPARE(record->text(), u"Record"_s);
    record->click();
    QCOMPARE(mDelegate->calls, QStringList{u"start 0 1"_s});
    QVERIFY(mController->macroDetailsArray().isEmpty());
    QCOMPARE(record->text(), u"Stop"_s);
    QVERIFY(record->isChecked());
    QVERIFY(record->isEnabled());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
}

void MacrosRecordingTest::stoppingSavesAndReadsTheLines()
{
    fill({u"A"_s, u"B"_s}, 1);
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    record->click();
    mDelegate->calls.clear();
    record->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stop"_s, u"save 1 0"_s, u"details 1"_s}));
    QCOMPARE(record->text(), u"Record"_s);
    QVERIFY(!record->isChecked());
    QVERIFY(!mController->isRecordingOrCapturing());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(outlet(name)->isEnabled() == (name != u"mDeleteMacroDetails"_s), qPrintable(name));
}

void MacrosRecordingTest::appendedRecordingKeepsTheLines()
{
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(2);
    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"start 1 1"_s});
    QCOMPARE(mController->macroDetailsArray().size(), 5);
    QCOMPARE(events()->selectedRow(), -1);
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Stop"_s);
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stop"_s, u"save 1 1"_s, u"details 1"_s}));
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"start 0 1"_s});
}

void MacrosRecordingTest::newLinesAreAppendedAndShown()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"0.020 seconds delay\n"_s, u"Key Release A"_s}}});
    QCOMPARE(mController->macroDetailsArray(),
             (QStringList{u"Key Press A"_s, u"0.020 seconds delay\n"_s, u"Key Release A"_s}));
    QCOMPARE(events()->selectedRow(), 2);
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
}

void MacrosRecordingTest::linesAfterStopAreIgnored()
{
    fill({u"A"_s}, 0);
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    record->click();
    record->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QCOMPARE(mController->macroDetailsArray().size(), 5);
}

void MacrosRecordingTest::linesWithoutARecordingAreIgnored_data()
{
    QTest::addColumn<std::function<void()>>("begin");
    // Another client of the daemon may record at any time.
    QTest::newRow("none was begun") << std::function<void()>([] {});
    QTest::newRow("the event sheet is open")
        << std::function<void()>([this] { choose("mSettingsMacroDetails", MacroCommands::edit); });
    QTest::newRow("Record was clicked without a macro") << std::function<void()>([this] {
        list()->deselectAll();
        mController->clickRecordMacroDetails(nullptr);
        list()->selectRow(0);
    });
    QTest::newRow("the tab was entered anew") << std::function<void()>([this] {
        outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
        mController->checkMacroRecordingStatus(u"Macros"_s);
    });
}

void MacrosRecordingTest::linesWithoutARecordingAreIgnored()
{
    QFETCH(std::function<void()>, begin);
    fill({u"A"_s}, 0);
    events()->selectRow(2);
    begin();
    events()->selectRow(2);
    const QStringList lines = mController->macroDetailsArray();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QCOMPARE(mController->macroDetailsArray(), lines);
    QCOMPARE(events()->numberOfRows(), 5);
    QCOMPARE(events()->selectedRow(), 2);
}

void MacrosRecordingTest::linesArriveAsNotifications()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mCenter->post(u"MacroSequence271"_s, {{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QTRY_COMPARE(mController->macroDetailsArray(), QStringList{u"Key Press A"_s});
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mCenter->post(u"SingleKeyEvent1048"_s, {{u"singleKey"_s, 4}, {u"singleKeyModif"_s, 0}});
    QTRY_COMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), u"A"_s);
}

void MacrosRecordingTest::leavingTheTabStops_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("new recording") << u"mRecordMacroDetails"_s << QStringList{u"stop"_s, u"save 0 0"_s, u"details 0"_s};
    QTest::newRow("appended recording") << u"mAddMacroDetails"_s
                                        << QStringList{u"stop"_s, u"save 0 1"_s, u"details 0"_s};
}

void MacrosRecordingTest::leavingTheTabStops()
{
    QFETCH(QString, start);
    QFETCH(QStringList, calls);
    fill({u"A"_s}, 0);
    outlet<QPushButton>(start)->click();
    mDelegate->calls.clear();
    mController->checkMacroRecordingStatus(u"Lighting"_s);
    QCOMPARE(mDelegate->calls, calls);
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
    mDelegate->calls.clear();
    mController->checkMacroRecordingStatus(u"Keys"_s);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosRecordingTest::enteringTheTabResetsTheRecordButton()
{
    fill({u"A"_s}, 0);
    mController->setStateOfTableButtonsWithState(false);
    mController->checkMacroRecordingStatus(u"Macros"_s);
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
    QVERIFY(outlet(u"mAddMacro"_s)->isEnabled());
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
    mController->setControlsState(false);
    mController->checkMacroRecordingStatus(u"Macros"_s);
    QVERIFY(!outlet(u"mAddMacro"_s)->isEnabled());
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosRecordingTest::stoppingWithoutARecordingDoesNothing()
{
    fill({u"A"_s}, 0);
    mController->stopAllMacroRecording();
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
}

/// Deliberate: the capture that Cancel ended still counts, and Stop ends it.
void MacrosRecordingTest::recordingAfterACancelledSheetEndsTheCapture()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    outlet<QPushButton>(u"mMacroEventEditCancel"_s)->click();
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press B"_s}}});
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    // The lines show the stored macro.
    QCOMPARE(mDelegate->calls, (QStringList{u"start 0 0"_s, u"stopKey"_s, u"details 0"_s}));
    QCOMPARE(mController->macroDetailsArray().size(), threeEvents().size());
    // The next one is saved.
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"start 0 0"_s, u"stop"_s, u"save 0 0"_s, u"details 0"_s}));
}

void MacrosRecordingTest::recordingBelongsToItsMacro_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QList<int>>("after");
    QTest::addColumn<QStringList>("calls");
    for (const auto &[name, button, flag] :
         {std::tuple{"new", u"mRecordMacroDetails"_s, 0}, std::tuple{"appended", u"mAddMacroDetails"_s, 1}}) {
        const auto saved = [append = flag](int row) {
            return QStringList{u"stop"_s, u"save %1 %2"_s.arg(row).arg(append), u"details %1"_s.arg(row)};
        };
        QTest::addRow("%s, macro above deleted", name) << button << QList<int>{2, 3} << saved(0);
        QTest::addRow("%s, macro above added", name) << button << QList<int>{9, 1, 2, 3} << saved(2);
        QTest::addRow("%s, macro below deleted", name) << button << QList<int>{1, 2} << saved(1);
        QTest::addRow("%s, macro deleted", name) << button << QList<int>{1, 3} << QStringList{u"stop"_s};
        QTest::addRow("%s, all macros deleted", name) << button << QList<int>{} << QStringList{u"stop"_s};
        QTest::addRow("%s, another one of its number before it", name) << button << QList<int>{2, 2, 3} << saved(1);
    }
}

void MacrosRecordingTest::recordingBelongsToItsMacro()
{
    QFETCH(QString, start);
    QFETCH(QList<int>, after);
    QFETCH(QStringList, calls);
    mDelegate->macros = numberedMacros({1, 2, 3});
    mDelegate->refresh();
    list()->selectRow(1);
    outlet<QPushButton>(start)->click();
    mDelegate->calls.clear();
    mDelegate->macros = numberedMacros(after);
    mDelegate->refresh();
    if (after.contains(2))
        outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, calls);
    QVERIFY(!mController->isRecordingOrCapturing());
    QVERIFY(!mController->recordButtonReadsStop());
    QVERIFY(list()->isEnabled());
    QVERIFY(outlet(u"mAddMacro"_s)->isEnabled());
    QCOMPARE(outlet(u"mRecordMacroDetails"_s)->isVisible(), after.contains(2));
    // Every control works.
    if (after.isEmpty())
        return;
    mDelegate->calls.clear();
    list()->selectRow(int(after.size()) - 1);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QVERIFY(mDelegate->calls.contains(u"start 0 %1"_s.arg(after.size() - 1)));
}

void MacrosRecordingTest::recordingEndsWithItsRow()
{
    fill({u"A"_s, u"B"_s}, 1); // without numbers
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mDelegate->calls.clear();
    mDelegate->macros.removeLast();
    mDelegate->refresh();
    QCOMPARE(mDelegate->calls, QStringList{u"stop"_s});
    QVERIFY(!mController->isRecordingOrCapturing());
    QVERIFY(list()->isEnabled());
}

void MacrosRecordingTest::stoppingEndsTheEventSheet()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    auto *sheet = outlet<Sheet>(u"mEditEventWindow"_s);
    QVERIFY(sheet->isUp());
    mDelegate->calls.clear();
    mController->stopAllMacroRecording(); // as if another application came to the front
    QVERIFY(!sheet->isUp());
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
    QVERIFY(outlet(u"mSettingsMacroDetails"_s)->isEnabled());
    mController->stopAllMacroRecording();
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
}

void MacrosRecordingTest::anotherKeyboardStopsTheRecording_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("saved");
    QTest::newRow("new recording, Space") << u"mRecordMacroDetails"_s << Qt::Key_Space << u"save 0 0"_s;
    QTest::newRow("new recording, Return") << u"mRecordMacroDetails"_s << Qt::Key_Return << u"save 0 0"_s;
    QTest::newRow("appended recording, Space") << u"mAddMacroDetails"_s << Qt::Key_Space << u"save 0 1"_s;
    QTest::newRow("appended recording, Enter") << u"mAddMacroDetails"_s << Qt::Key_Enter << u"save 0 1"_s;
}

void MacrosRecordingTest::anotherKeyboardStopsTheRecording()
{
    QFETCH(QString, start);
    QFETCH(Qt::Key, key);
    QFETCH(QString, saved);
    fill({u"A"_s}, 0);
    // The recorded keyboard does not reach the window, so its keys are meant for the window.
    events()->setFocus();
    outlet<QPushButton>(start)->click();
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    QVERIFY(record->hasFocus());
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QVERIFY(record->hasFocus());
    mDelegate->calls.clear();
    QTest::keyClick(QApplication::focusWidget(), key);
    QCOMPARE(mDelegate->calls, (QStringList{u"stop"_s, saved, u"details 0"_s}));
    QCOMPARE(record->text(), u"Record"_s);
}

void MacrosRecordingTest::recordingDescribesTheWayBackToTheKeyboard_data()
{
    QTest::addColumn<QString>("start");
    QTest::newRow("new recording") << u"mRecordMacroDetails"_s;
    QTest::newRow("appended recording") << u"mAddMacroDetails"_s;
}

void MacrosRecordingTest::recordingDescribesTheWayBackToTheKeyboard()
{
    QFETCH(QString, start);
    fill({u"A"_s}, 0);
    const auto *hint = outlet<QLabel>(u"mRecordingHint"_s);
    const auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    QVERIFY(!hint->isVisible());
    outlet<QPushButton>(start)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QVERIFY(hint->isVisible());
    QCOMPARE(hint->text(), u"Hold Escape for one second to use this keyboard in the window again."_s);
    QCOMPARE(record->accessibleDescription(), hint->text());
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QVERIFY(!hint->isVisible());
    QCOMPARE(record->accessibleDescription(), QString());
}

void MacrosRecordingTest::recordingEndsWhenTheKeyboardReturns()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, (QStringList{u"stop"_s, u"save 0 0"_s, u"details 0"_s}));
    QVERIFY(!mController->isRecordingOrCapturing());
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList());
}

void MacrosRecordingTest::windowShortcutsWorkWhileRecording()
{
    fill({u"A"_s}, 0);
    QShortcut shortcut(Qt::Key_F1, mWindow.get());
    const QSignalSpy activated(&shortcut, &QShortcut::activated);
    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    QTest::keyClick(mWindow.get(), Qt::Key_F1);
    QCOMPARE(activated.size(), 1);
    QVERIFY(mController->isRecordingOrCapturing());
}

void MacrosRecordingTest::keysOfTheListsDoNothingWhileRecording()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    mDelegate->calls.clear();
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Delete, Qt::Key_Tab, Qt::Key_Up, Qt::Key_A})
        QTest::keyClick(QApplication::focusWidget(), key);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Stop"_s);
    QCOMPARE(events()->selectedRow(), 0);
    QCOMPARE(editor(), nullptr);
}

void MacrosRecordingTest::lastRecordedLineIsVisible()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    QVariantList many;
    for (int event = 0; event < 500; ++event)
        many += {u"0.020 seconds delay\n"_s, u"Key Press A"_s};
    mController->recordEvents({{u"messagesArray"_s, many}});
    QCOMPARE(events()->selectedRow(), 5 + 1000 - 1);
    const QRect last = events()->visualRect(events()->model()->index(1004, 0));
    QVERIFY(events()->viewport()->rect().contains(last.center()));
}

void MacrosRecordingTest::captureIsStoppedWithoutSaving_data()
{
    QTest::addColumn<bool>("isTabLeft");
    QTest::newRow("the tab is left") << true;
    QTest::newRow("the window loses the focus, or the keyboard goes") << false;
}

void MacrosRecordingTest::captureIsStoppedWithoutSaving()
{
    QFETCH(bool, isTabLeft);
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    mDelegate->calls.clear();
    if (isTabLeft)
        mController->checkMacroRecordingStatus(u"Keys"_s);
    else
        mController->stopAllMacroRecording();
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
    QCOMPARE(outlet<QPushButton>(u"mRecordMacroDetails"_s)->text(), u"Record"_s);
    QVERIFY(!mController->isRecordingOrCapturing());
    mController->stopAllMacroRecording();
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
}

void MacrosRecordingTest::removedKeyboardLeavesEverythingDisabled()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->stopAllMacroRecording();
    mController->setControlsState(false);
    for (const QString &name : tableButtons + tables + QStringList{u"mRecordMacroDetails"_s})
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
    mController->checkMacroRecordingStatus(u"Keys"_s);
    mController->checkMacroRecordingStatus(u"Macros"_s);
    for (const QString &name : tableButtons)
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
}

void MacrosRecordingTest::recordingNeedsASelectedMacro()
{
    fill({u"A"_s});
    auto *record = outlet<QPushButton>(u"mRecordMacroDetails"_s);
    mController->clickRecordMacroDetails(record);
    mController->clickAddMacroDetails(nullptr);
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(!mController->isRecordingOrCapturing());
    QVERIFY(!record->isChecked());
}

void MacrosRecordingTest::recordedLinesAreReadableInADisabledList()
{
    fill({u"A"_s}, 0);
    const auto textColor = [this](QPalette::ColorGroup group) {
        return events()->palette().color(group, QPalette::Text);
    };
    const QColor faint = textColor(QPalette::Disabled);
    QVERIFY(faint != textColor(QPalette::Active));
    for (const char *start : {"mRecordMacroDetails", "mAddMacroDetails"}) {
        outlet<QPushButton>(QLatin1StringView(start))->click();
        QCOMPARE(textColor(QPalette::Disabled), textColor(QPalette::Active));
        outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
        QCOMPARE(textColor(QPalette::Disabled), faint);
    }
}

void MacrosRecordingTest::linesOfEachRecordingAreAccepted_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("rows");
    QTest::newRow("new recording") << u"mRecordMacroDetails"_s << 1;
    QTest::newRow("appended recording") << u"mAddMacroDetails"_s << 6;
}

void MacrosRecordingTest::linesOfEachRecordingAreAccepted()
{
    QFETCH(QString, start);
    QFETCH(int, rows);
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click(); // a stopped recording, whose lines are late
    outlet<QPushButton>(start)->click();
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QCOMPARE(events()->numberOfRows(), rows);
}

void MacrosRecordingTest::enteringTheTabEndsAnotherRecording()
{
    fill({u"A"_s}, 0);
    mController->checkMacroRecordingStatus(u"Macros"_s);
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QCOMPARE(events()->numberOfRows(), 5);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    mController->checkMacroRecordingStatus(u"Macros"_s);
    QVERIFY(!mController->isRecordingOrCapturing());
    QVERIFY(!mController->recordButtonReadsStop());
}

QTEST_MAIN(MacrosRecordingTest)
#include "macrosrecordingtest.moc"
