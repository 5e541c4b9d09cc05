// SPDX-License-Identifier: MIT
// Editing the events of the selected macro: the commands, the delay sheet, the event sheet.
#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/pulldownbutton.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

using namespace MacrosTesting;

class MacrosEventsTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void deletingAnEventSelectsTheNeighbour_data();
    void deletingAnEventSelectsTheNeighbour();
    void deleteEventNeedsASelectedRow();
    void eventMenusEnableCommands_data();
    void eventMenusEnableCommands();
    void eventCommandsSendTheirRequest_data();
    void eventCommandsSendTheirRequest();
    void delaySheetSetsTheDelay();
    void delaySheetCancelSendsNothing();
    void delaySheetShowsThePresentDelay();
    void eventSheetStoresTheCapturedKey();
    void editIsOfferedInEveryRow();
    void capturedKeyIsStoredWithinTheLimitOfItsRequests_data();
    void capturedKeyIsStoredWithinTheLimitOfItsRequests();
    void eventSheetWithoutAKeyStoresNothing();
    void eventSheetCancelStoresNothing();
    void capturedKeyIsShown_data();
    void capturedKeyIsShown();
    void listHasTheFocusAfterADeletion();
    void emptyEventRecordIsNotSent();
    void sheetsBelongToTheWindow();
    void capturedKeyOfAnEarlierSheetIsForgotten_data() { addEndsOfTheEventSheet(); }
    void capturedKeyOfAnEarlierSheetIsForgotten();
    void listHasTheFocusAfterTheEventSheet_data() { addEndsOfTheEventSheet(); }
    void listHasTheFocusAfterTheEventSheet();
    void eventSheetDescribesTheWayBackToTheKeyboard();
    void captureRestartsWithANewDaemon();
    void sheetEndsWithoutAKeyboard_data();
    void sheetEndsWithoutAKeyboard();
    void captureMustBeEndedAgainAfterCancel();
    void keysEditAndDeleteTheSelectedEvent();
    void doubleClickEditsTheEvent();
    void rowIsOfTheKindOfItsLine_data();
    void rowIsOfTheKindOfItsLine();
    void emptyCaptureForgetsTheEarlierKey();
    void emptyDelayIsIgnored();
    void sheetClosesWithItsEvents_data();
    void sheetClosesWithItsEvents();
    void sheetStaysWhileItsEventsExist_data();
    void sheetStaysWhileItsEventsExist();
    void tabStaysDisabledWhenTheKeyboardIsRemovedDuringTheEventSheet_data() { addEndsOfTheEventSheet(); }
    void tabStaysDisabledWhenTheKeyboardIsRemovedDuringTheEventSheet();

    void timelineAndListSelectTheSameRow();
    void timelineChangesADelay();
    void timelineFollowsTheSelectedMacro();
    void timelineShowsWhatIsRecorded();
    void changeInTheTimelineEndsWithItsEvents_data();
    void changeInTheTimelineEndsWithItsEvents();
    void timelineIsOffWhileTheListIs();
    void keysLeftDownAreNamed();
    void keysLeftDownAreReleased();
    void keysAreReleasedInTheStoredEvents();
    void unpairedEventsAreMarked();
    void marksFollowTheEvents();

private:
    static void addEndsOfTheEventSheet();
    MacroTimelineView *timeline() const { return outlet<MacroTimelineView>(u"mMacroTimelineView"_s); }
    /// Chooses "Edit" for a row of the event list, which opens the sheet of an event or of a delay.
    void editRow(int row);
};

void MacrosEventsTest::editRow(int row)
{
    events()->selectRow(row);
    choose("mSettingsMacroDetails", MacroCommands::edit);
}

void MacrosEventsTest::addEndsOfTheEventSheet()
{
    QTest::addColumn<QString>("end");
    QTest::newRow("OK") << u"mMacroEventEditOK"_s;
    QTest::newRow("Cancel") << u"mMacroEventEditCancel"_s;
}

void MacrosEventsTest::deletingAnEventSelectsTheNeighbour_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("selected");
    QTest::newRow("one line left") << 2 << 1 << 0;
    QTest::newRow("none left") << 0 << 0 << -1;
    QTest::newRow("in the middle") << 1 << 3 << 1;
    QTest::newRow("the last") << 4 << 3 << 2;
}

void MacrosEventsTest::deletingAnEventSelectsTheNeighbour()
{
    QFETCH(int, row);
    QFETCH(int, left);
    QFETCH(int, selected);
    fill({u"A"_s, u"B"_s}, 1);
    mDelegate->linesAfterRemoval = threeEvents().mid(0, left);
    events()->selectRow(row);
    QVERIFY(outlet(u"mDeleteMacroDetails"_s)->isEnabled());
    outlet<QPushButton>(u"mDeleteMacroDetails"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"removeEvent %1 1"_s.arg(row), u"details 1"_s}));
    QCOMPARE(events()->model()->rowCount(), left);
    QCOMPARE(events()->selectedRow(), selected);
}

void MacrosEventsTest::deleteEventNeedsASelectedRow()
{
    fill({u"A"_s}, 0);
    mController->clickDeleteMacroDetails(nullptr);
    QVERIFY(mDelegate->calls.isEmpty());
    events()->selectRow(1);
    QVERIFY(outlet(u"mDeleteMacroDetails"_s)->isEnabled());
    events()->deselectAll();
    QVERIFY(!outlet(u"mDeleteMacroDetails"_s)->isEnabled());
}

void MacrosEventsTest::eventMenusEnableCommands_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<int>>("gear");
    QTest::addColumn<QList<int>>("context");
    QTest::newRow("no lines") << 0 << -1 << QList<int>{1, 28, 20} << QList<int>{1, 28, 20};
    QTest::newRow("none selected") << 5 << -1 << QList<int>{1, 4, 6, 28, 20} << QList<int>{1, 4, 6, 28, 20};
    QTest::newRow("event selected") << 5 << 2 << QList<int>{1, 2, 3, 4, 6, 28, 20, 21, 22, 24, 25, 26, 27}
                                    << QList<int>{1, 3, 4, 6, 28, 20, 21, 22, 24, 25, 26, 27};
    QTest::newRow("delay selected") << 5 << 3 << QList<int>{1, 2, 3, 4, 5, 6, 28, 20, 21, 22, 24, 25, 26, 27}
                                    << QList<int>{1, 2, 3, 4, 5, 6, 28, 20, 21, 22, 24, 25, 26, 27};
}

void MacrosEventsTest::eventMenusEnableCommands()
{
    QFETCH(int, lines);
    QFETCH(int, row);
    QFETCH(QList<int>, gear);
    QFETCH(QList<int>, context);
    mDelegate->lines = threeEvents().mid(0, lines);
    fill({u"A"_s}, 0);
    events()->selectRow(row);
    auto *button = outlet<PulldownButton>(u"mSettingsMacroDetails"_s);
    button->validateItems();
    QCOMPARE(enabledTags(button->menu()->actions()), gear);
    const std::unique_ptr<QMenu> menu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    QCOMPARE(menu->actions().size(), 15);
    QCOMPARE(menu->actions().at(2)->text(), u"Delete event"_s);
    QCOMPARE(enabledTags(menu->actions()), context);
}

void MacrosEventsTest::eventCommandsSendTheirRequest_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("record") << 1 << -1 << QStringList{u"start 0 1"_s};
    QTest::newRow("edit nothing") << 2 << -1 << QStringList{};
    QTest::newRow("delete all") << 4 << -1 << QStringList{u"removeAll 1"_s, u"details 1"_s};
    QTest::newRow("copy delay of row 3") << 5 << 3 << QStringList{u"allDelays 3 1 0"_s, u"details 1"_s};
    QTest::newRow("copy delay of an event") << 5 << 2 << QStringList{};
    QTest::newRow("copy delay of nothing") << 5 << -1 << QStringList{};
    QTest::newRow("no delay") << 6 << -1 << QStringList{u"allDelays 0 1 1"_s, u"details 1"_s};
    QTest::newRow("unknown") << 7 << 1 << QStringList{};
}

void MacrosEventsTest::eventCommandsSendTheirRequest()
{
    QFETCH(int, tag);
    QFETCH(int, row);
    QFETCH(QStringList, calls);
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(row);
    QAction item;
    item.setData(tag);
    mController->clickMacroDetailsSettingsMenuItem(&item);
    QCOMPARE(mDelegate->calls, calls);
    QCOMPARE(events()->model()->rowCount(), int(mController->macroDetailsArray().size()));
}

void MacrosEventsTest::delaySheetSetsTheDelay()
{
    fill({u"A"_s, u"B"_s}, 1);
    editRow(3);
    auto *sheet = outlet<Sheet>(u"mEditDelayWindow"_s);
    QVERIFY(sheet && sheet->isVisible());
    auto *field = outlet<NumberOnlyTextField>(u"mInputMacroDelay"_s);
    QCOMPARE(field->text(), QString());
    QTest::keyClicks(field, u"250"_s);
    outlet<QPushButton>(u"mMacroDelayOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"delay 250 3 1"_s, u"details 1"_s}));
    QVERIFY(!sheet->isVisible());
}

void MacrosEventsTest::delaySheetCancelSendsNothing()
{
    fill({u"A"_s}, 0);
    editRow(1);
    auto *field = outlet<NumberOnlyTextField>(u"mInputMacroDelay"_s);
    QTest::keyClicks(field, u"250"_s);
    outlet<QPushButton>(u"mMacroDelayCancel"_s)->click();
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(field->text(), QString());
    QVERIFY(!outlet<Sheet>(u"mEditDelayWindow"_s)->isVisible());
}

void MacrosEventsTest::delaySheetShowsThePresentDelay()
{
    fill({u"A"_s}, 0);
    editRow(3); // "0.120 seconds delay"
    auto *label = outlet<QLabel>(u"mEnterMacroDelayLabel"_s);
    auto *hint = outlet<QLabel>(u"mMacroDelayHint"_s);
    QCOMPARE(label->text().remove(u'&'), u"Delay in milliseconds:"_s);
    QVERIFY(hint && hint->isVisible());
    QCOMPARE(hint->text(), u"Present delay: 120 ms. Enter a whole number."_s);
    QCOMPARE(outlet(u"mInputMacroDelay"_s)->accessibleDescription(), hint->text());
    outlet<QPushButton>(u"mMacroDelayCancel"_s)->click();
    editRow(1);
    QCOMPARE(hint->text(), u"Present delay: 20 ms. Enter a whole number."_s);
}

void MacrosEventsTest::eventSheetStoresTheCapturedKey()
{
    fill({u"A"_s, u"B"_s}, 1);
    editRow(2);
    auto *sheet = outlet<Sheet>(u"mEditEventWindow"_s);
    QVERIFY(sheet && sheet->isVisible());
    QCOMPARE(mDelegate->calls, (QStringList{u"event 1 2"_s, u"startEditHID"_s}));
    QVERIFY(mController->recordButtonReadsStop());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
    mDelegate->calls.clear();
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), u"H"_s);
    QVERIFY(mDelegate->calls.isEmpty());
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 1 2"_s, u"update 1 2"_s, u"details 1"_s}));
    QCOMPARE(mDelegate->record,
             (QVariantMap{{u"command"_s, 1}, {u"delay"_s, 20}, {u"page"_s, 7}, {u"argument"_s, 11}}));
    QVERIFY(!sheet->isVisible());
    QVERIFY(!mController->recordButtonReadsStop());
    for (const QString &name : tableButtons + tables)
        QVERIFY2(outlet(name)->isEnabled(), qPrintable(name));
}

void MacrosEventsTest::editIsOfferedInEveryRow()
{
    for (int row = 5; row < 300; ++row)
        mDelegate->lines.append(row % 2 == 1 ? u"0.100 seconds delay\n"_s : u"Key Press A"_s);
    fill(QStringList(257, u"A"_s), 0);
    auto *button = outlet<PulldownButton>(u"mSettingsMacroDetails"_s);
    const QAction *edit = button->itemWithTag(MacroCommands::edit);
    for (const int macro : {0, 256}) {
        list()->selectRow(macro);
        for (const int row : {0, 254, 255, 256, 257, 299}) {
            events()->selectRow(row);
            button->validateItems();
            QVERIFY(edit->isEnabled());
            QVERIFY(!button->menu()->toolTipsVisible());
            choose("mSettingsMacroDetails", MacroCommands::edit);
            const bool isDelay = row % 2 == 1;
            QVERIFY(outlet<Sheet>(isDelay ? u"mEditDelayWindow"_s : u"mEditEventWindow"_s)->isUp());
            outlet<QPushButton>(isDelay ? u"mMacroDelayCancel"_s : u"mMacroEventEditCancel"_s)->click();
        }
    }
    // The request for an event has one byte for each of its rows.
    QCOMPARE(mDelegate->calls.filter(u"event "_s), (QStringList{u"event 0 0"_s, u"event 0 254"_s}));
}

void MacrosEventsTest::capturedKeyIsStoredWithinTheLimitOfItsRequests_data()
{
    QTest::addColumn<int>("macroRow");
    QTest::addColumn<int>("eventRow");
    QTest::addColumn<bool>("isStored");
    QTest::newRow("last event within") << 0 << 255 << true;
    QTest::newRow("event beyond") << 0 << 256 << false;
    QTest::newRow("delay beyond") << 0 << 257 << false;
    QTest::newRow("no event") << 0 << -1 << false;
    QTest::newRow("last macro within") << 255 << 2 << true;
    QTest::newRow("macro beyond") << 256 << 2 << false;
    QTest::newRow("no macro") << -1 << 2 << false;
}

void MacrosEventsTest::capturedKeyIsStoredWithinTheLimitOfItsRequests()
{
    QFETCH(int, macroRow);
    QFETCH(int, eventRow);
    QFETCH(bool, isStored);
    for (int row = 5; row < 300; ++row)
        mDelegate->lines.append(u"line %1"_s.arg(row));
    fill(QStringList(257, u"A"_s), 0);
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    // While the sheet is open, another macro is selected, or none.
    list()->deselectAll();
    list()->selectRow(macroRow);
    events()->deselectAll();
    events()->selectRow(eventRow);
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls.value(0), u"stopKey"_s);
    const QString rows = u" %1 %2"_s.arg(macroRow).arg(eventRow);
    QCOMPARE(mDelegate->calls.filter(u"event "_s), isStored ? QStringList{u"event"_s + rows} : QStringList());
    QCOMPARE(mDelegate->calls.filter(u"update "_s), isStored ? QStringList{u"update"_s + rows} : QStringList());
}

void MacrosEventsTest::eventSheetWithoutAKeyStoresNothing()
{
    fill({u"A"_s}, 0);
    editRow(0);
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 0 0"_s}));
}

void MacrosEventsTest::eventSheetCancelStoresNothing()
{
    fill({u"A"_s}, 0);
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditCancel"_s)->click();
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
    QVERIFY(!mController->recordButtonReadsStop());
    QVERIFY(!outlet<Sheet>(u"mEditEventWindow"_s)->isVisible());
}

void MacrosEventsTest::capturedKeyIsShown_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("argument");
    QTest::newRow("key") << 4 << 0 << u"A"_s << 4;
    QTest::newRow("key with a modifier") << 4 << 2 << u"A"_s << 4;
    QTest::newRow("modifier alone") << 0 << 225 << u"Left Shift"_s << 225;
    QTest::newRow("modifier alone, high bits in the key") << 0x100 << 225 << u"Left Shift"_s << 225;
    QTest::newRow("key, high bits") << 0x104 << 0 << u"A"_s << 4;
    QTest::newRow("key with high bits and a modifier") << 0x104 << 225 << u"A"_s << 4;
}

void MacrosEventsTest::capturedKeyIsShown()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    QFETCH(QString, shown);
    QFETCH(int, argument);
    fill({u"A"_s}, 0);
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, key}, {u"singleKeyModif"_s, modifier}});
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), shown);
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->record.value(u"argument"_s), QVariant(argument));
}

void MacrosEventsTest::listHasTheFocusAfterADeletion()
{
    fill({u"A"_s}, 0);
    mDelegate->linesAfterRemoval = threeEvents().mid(0, 3);
    events()->selectRow(4);
    outlet<QPushButton>(u"mDeleteMacroDetails"_s)->click();
    QVERIFY(events()->hasFocus());
}

void MacrosEventsTest::emptyEventRecordIsNotSent()
{
    fill({u"A"_s}, 0);
    mDelegate->event.clear();
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 0 0"_s}));
}

void MacrosEventsTest::sheetsBelongToTheWindow()
{
    fill({u"A"_s}, 0);
    for (const auto &[row, name] : {std::pair{0, u"mEditEventWindow"_s}, std::pair{1, u"mEditDelayWindow"_s}}) {
        editRow(row);
        auto *sheet = outlet<Sheet>(name);
        QCOMPARE(sheet->parentWidget(), mWindow.get());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        sheet->reject(); // Escape presses Cancel
        QVERIFY(!sheet->isUp());
    }
}

void MacrosEventsTest::capturedKeyOfAnEarlierSheetIsForgotten()
{
    QFETCH(QString, end);
    fill({u"A"_s}, 0);
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    outlet<QPushButton>(end)->click();
    choose("mSettingsMacroDetails", MacroCommands::edit);
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), QString());
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 0 0"_s}));
}

void MacrosEventsTest::listHasTheFocusAfterTheEventSheet()
{
    QFETCH(QString, end);
    fill({u"A"_s}, 0);
    events()->setFocus();
    events()->selectRow(2);
    QTest::keyClick(events(), Qt::Key_Return);
    QVERIFY(outlet<Sheet>(u"mEditEventWindow"_s)->isUp());
    outlet<QPushButton>(end)->click();
    QTRY_VERIFY(events()->hasFocus());
    mDelegate->calls.clear();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space); // would press Record
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosEventsTest::eventSheetDescribesTheWayBackToTheKeyboard()
{
    fill({u"A"_s}, 0);
    editRow(0);
    const auto *hint = outlet<QLabel>(u"mMacroEventHint"_s);
    QVERIFY(hint->isVisible());
    QCOMPARE(hint->text(), u"Hold Escape for one second to use this keyboard in the window again."_s);
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->accessibleDescription(), hint->text());
}

void MacrosEventsTest::captureRestartsWithANewDaemon()
{
    fill({u"A"_s}, 0);
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    mController->setControlsState(true); // as at every attachment
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList{u"startEditHID"_s});
    QVERIFY(mController->isRecordingOrCapturing());
    QVERIFY(mController->recordButtonReadsStop());
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), u"H"_s); // captured earlier and not stored yet
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 0 0"_s, u"update 0 0"_s, u"details 0"_s}));
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList());
}

void MacrosEventsTest::sheetEndsWithoutAKeyboard_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("sheet");
    QTest::newRow("event") << 0 << u"mEditEventWindow"_s;
    QTest::newRow("delay") << 1 << u"mEditDelayWindow"_s;
}

void MacrosEventsTest::sheetEndsWithoutAKeyboard()
{
    QFETCH(int, row);
    QFETCH(QString, sheet);
    fill({u"A"_s}, 0);
    editRow(row);
    mDelegate->calls.clear();
    mController->setControlsState(false);
    QVERIFY(!outlet<Sheet>(sheet)->isUp());
    QCOMPARE(mDelegate->calls, QStringList());
    QVERIFY(!mController->recordButtonReadsStop());
    QVERIFY(!outlet(u"mRecordMacroDetails"_s)->isEnabled());
    QVERIFY(!list()->isEnabled());
    QVERIFY(!events()->isEnabled());
    mController->setControlsState(true);
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList());
    QVERIFY(outlet(u"mRecordMacroDetails"_s)->isEnabled());
    QVERIFY(list()->isEnabled());
    QVERIFY(outlet(u"mSettingsMacroDetails"_s)->isEnabled());
}

/// Deliberate: after Cancel the capture counts as running until Stop or another tab ends it again.
void MacrosEventsTest::captureMustBeEndedAgainAfterCancel()
{
    fill({u"A"_s}, 0);
    editRow(0);
    outlet<QPushButton>(u"mMacroEventEditCancel"_s)->click();
    QVERIFY(mController->isRecordingOrCapturing());
    // The window does not show it.
    QVERIFY(!mController->recordButtonReadsStop());
    QVERIFY(list()->isEnabled());
    QVERIFY(events()->isEnabled());
    for (const auto &name :
         QStringList{u"mAddMacroDetails"_s, u"mDeleteMacroDetails"_s, u"mSettingsMacroDetails"_s, u"mAddMacro"_s})
        QVERIFY(outlet(name)->isEnabled());
    mController->setControlsState(true);
    QVERIFY(list()->isEnabled());
    mDelegate->calls.clear();
    mController->keyboardCameBack();
    QCOMPARE(mDelegate->calls, QStringList());
    mController->checkMacroRecordingStatus(u"Keys"_s);
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
    QVERIFY(!mController->isRecordingOrCapturing());
    mController->checkMacroRecordingStatus(u"Keys"_s);
    QCOMPARE(mDelegate->calls, QStringList{u"stopKey"_s});
}

void MacrosEventsTest::keysEditAndDeleteTheSelectedEvent()
{
    fill({u"A"_s}, 0);
    mDelegate->linesAfterRemoval = threeEvents().mid(0, 3);
    events()->setFocus();
    events()->selectRow(1);
    QTest::keyClick(events(), Qt::Key_Return);
    QVERIFY(outlet<Sheet>(u"mEditDelayWindow"_s)->isUp());
    outlet<QPushButton>(u"mMacroDelayCancel"_s)->click();
    events()->setFocus();
    QTest::keyClick(events(), Qt::Key_Delete);
    QCOMPARE(mDelegate->calls.value(0), u"removeEvent 1 0"_s);
    mDelegate->calls.clear();
    events()->deselectAll();
    QTest::keyClick(events(), Qt::Key_Delete);
    QTest::keyClick(events(), Qt::Key_Return);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosEventsTest::doubleClickEditsTheEvent()
{
    fill({u"A"_s}, 0);
    const QPoint cell = events()->visualRect(events()->model()->index(2, 0)).center();
    QTest::mouseClick(events()->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(events()->viewport(), Qt::LeftButton, {}, cell);
    QVERIFY(outlet<Sheet>(u"mEditEventWindow"_s)->isUp());
    QCOMPARE(mDelegate->calls, (QStringList{u"event 0 2"_s, u"startEditHID"_s}));
}

void MacrosEventsTest::rowIsOfTheKindOfItsLine_data()
{
    const QVariant tap = MacroRecord::eventRecord({.command = MacroRecord::keyDown, .delayMs = 50, .argument = 4});
    const QVariant pause = MacroRecord::eventRecord({.delayMs = 100, .page = 0});
    QTest::addColumn<QVariantList>("macroEvents");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isDelay");
    QTest::newRow("delay of a pause") << QVariantList{tap, pause, tap} << 1 << true;
    QTest::newRow("delay behind a pause") << QVariantList{tap, pause, tap} << 2 << true;
    QTest::newRow("event behind a pause") << QVariantList{tap, pause, tap} << 3 << false;
    QTest::newRow("delay behind a pause at the beginning") << QVariantList{pause, tap, tap} << 0 << true;
    QTest::newRow("event behind a pause at the beginning") << QVariantList{pause, tap, tap} << 1 << false;
}

void MacrosEventsTest::rowIsOfTheKindOfItsLine()
{
    QFETCH(QVariantList, macroEvents);
    QFETCH(int, row);
    QFETCH(bool, isDelay);
    mDelegate->lines.clear();
    for (const QString &line : eventParser::getMessagesArray(macroEvents))
        mDelegate->lines += line;
    fill({u"A"_s}, 0);
    const QPoint cell = events()->visualRect(events()->model()->index(row, 0)).center();
    QTest::mouseClick(events()->viewport(), Qt::LeftButton, {}, cell);
    auto *gear = outlet<PulldownButton>(u"mSettingsMacroDetails"_s);
    gear->validateItems();
    QCOMPARE(gear->itemWithTag(MacroCommands::copyDelay)->isEnabled(), isDelay);
    const std::unique_ptr<QMenu> menu(
        outlet<NSTableViewMacroDetailsSubClass>(u"mMacroDetailsTableView"_s)->makeContextMenu());
    QCOMPARE(enabledTags(menu->actions()).contains(MacroCommands::edit), isDelay);
    gear->itemWithTag(MacroCommands::copyDelay)->trigger();
    QCOMPARE(mDelegate->calls.contains(u"allDelays %1 0 0"_s.arg(row)), isDelay);
    QTest::mouseDClick(events()->viewport(), Qt::LeftButton, {}, cell);
    const auto isUp = [this](const QString &name) { return outlet<Sheet>(name) && outlet<Sheet>(name)->isUp(); };
    QCOMPARE(isUp(u"mEditDelayWindow"_s), isDelay);
    QCOMPARE(isUp(u"mEditEventWindow"_s), !isDelay);
}

void MacrosEventsTest::emptyCaptureForgetsTheEarlierKey()
{
    fill({u"A"_s}, 0);
    editRow(0);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    mController->singleKeyEvents({{u"singleKey"_s, QVariantMap()}, {u"singleKeyModif"_s, QVariantList{1}}});
    QCOMPARE(outlet<QLineEdit>(u"mInputMacroEvent"_s)->text(), QString());
    mDelegate->calls.clear();
    outlet<QPushButton>(u"mMacroEventEditOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"stopKey"_s, u"event 0 0"_s}));
}

void MacrosEventsTest::emptyDelayIsIgnored()
{
    fill({u"A"_s}, 0);
    editRow(1);
    QTest::keyClicks(outlet<NumberOnlyTextField>(u"mInputMacroDelay"_s), u"75"_s);
    outlet<QPushButton>(u"mMacroDelayOK"_s)->click();
    mDelegate->calls.clear();
    choose("mSettingsMacroDetails", MacroCommands::edit); // the delay typed earlier is discarded
    outlet<QPushButton>(u"mMacroDelayOK"_s)->click();
    QCOMPARE(mDelegate->calls, (QStringList{u"delay 0 1 0"_s, u"details 0"_s}));
}

void MacrosEventsTest::sheetClosesWithItsEvents_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<QString>("change");
    for (const char *change : {"macro deleted", "all macros deleted", "events changed"}) {
        QTest::addRow("event, %s", change) << 2 << u"mEditEventWindow"_s << QString::fromLatin1(change);
        QTest::addRow("delay, %s", change) << 1 << u"mEditDelayWindow"_s << QString::fromLatin1(change);
    }
}

void MacrosEventsTest::sheetClosesWithItsEvents()
{
    QFETCH(int, row);
    QFETCH(QString, sheet);
    QFETCH(QString, change);
    mDelegate->macros = numberedMacros({1, 2, 3});
    mDelegate->refresh();
    list()->selectRow(1);
    editRow(row);
    QVERIFY(outlet<Sheet>(sheet)->isUp());
    mDelegate->calls.clear();
    // Simulates another client's change.
    if (change == "macro deleted"_L1) {
        mDelegate->macros.removeAt(1);
    } else if (change == "all macros deleted"_L1) {
        mDelegate->macros.clear();
    } else {
        QVariantMap changed = mDelegate->macros.at(1).toMap();
        changed[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{mDelegate->event}}};
        mDelegate->macros[1] = changed;
        mDelegate->lines = {u"Left Button down\n"_s};
    }
    mDelegate->refresh();
    QVERIFY(!outlet<Sheet>(sheet)->isUp());
    QCOMPARE(mDelegate->calls.contains(u"stopKey"_s), sheet == "mEditEventWindow"_L1);
    for (const QString &call : std::as_const(mDelegate->calls))
        QVERIFY2(call == "stopKey"_L1 || call == "details 1"_L1, qPrintable(call));
    QVERIFY(!mController->recordButtonReadsStop());
    QVERIFY(list()->isEnabled());
    if (change == "events changed"_L1)
        QCOMPARE(mController->macroDetailsArray(), QStringList{u"Left Button down\n"_s});
}

void MacrosEventsTest::sheetStaysWhileItsEventsExist_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("call");
    QTest::newRow("event") << 2 << u"mEditEventWindow"_s << u"mMacroEventEditOK"_s << u"update 1 2"_s;
    QTest::newRow("delay") << 1 << u"mEditDelayWindow"_s << u"mMacroDelayOK"_s << u"delay 0 1 1"_s;
}

void MacrosEventsTest::sheetStaysWhileItsEventsExist()
{
    QFETCH(int, row);
    QFETCH(QString, sheet);
    QFETCH(QString, end);
    QFETCH(QString, call);
    fill({u"A"_s, u"B"_s}, 1);
    // From here on the lines are newer than the record in the tab.
    choose("mSettingsMacroDetails", MacroCommands::noDelay);
    editRow(row);
    mController->singleKeyEvents({{u"singleKey"_s, 11}, {u"singleKeyModif"_s, 0}});
    QVariantMap newer = macroNamed(u"B"_s);
    newer[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{mDelegate->event}}};
    mDelegate->macros = {macroNamed(u"X"_s), newer, macroNamed(u"Y"_s)};
    mDelegate->refresh();
    QVERIFY(outlet<Sheet>(sheet)->isUp());
    mDelegate->calls.clear();
    outlet<QPushButton>(end)->click();
    QVERIFY(mDelegate->calls.contains(call));
}

void MacrosEventsTest::tabStaysDisabledWhenTheKeyboardIsRemovedDuringTheEventSheet()
{
    QFETCH(QString, end);
    fill({u"A"_s}, 0);
    editRow(0);
    mController->stopAllMacroRecording();
    mController->setControlsState(false);
    outlet<QPushButton>(end)->click();
    for (const QString &name : tableButtons + tables + QStringList{u"mRecordMacroDetails"_s})
        QVERIFY2(!outlet(name)->isEnabled(), qPrintable(name));
    QVERIFY(!mController->recordButtonReadsStop());
}

// The timeline

void MacrosEventsTest::timelineAndListSelectTheSameRow()
{
    fill({u"A"_s}, 0);
    events()->selectRow(2);
    QCOMPARE(timeline()->selectedRow(), 2);
    QTest::mouseClick(timeline()->viewport(), Qt::LeftButton, {}, timeline()->eventRect(2).center());
    QCOMPARE(events()->selectedRow(), 4);
    QTest::keyClick(timeline(), Qt::Key_Home);
    QCOMPARE(events()->selectedRow(), 0);
    events()->deselectAll();
    QCOMPARE(timeline()->selectedRow(), -1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosEventsTest::timelineChangesADelay()
{
    fill({u"A"_s, u"B"_s}, 1);
    events()->selectRow(2);
    timeline()->setFocus();
    for (int step = 0; step < 4; ++step)
        QTest::keyPress(timeline(), Qt::Key_Right, Qt::AltModifier);
    QVERIFY(mDelegate->calls.isEmpty());
    mDelegate->lines = {u"Key Press H"_s, u"0.060 seconds delay\n"_s, u"Key Release H"_s};
    QTest::keyRelease(timeline(), Qt::Key_Alt);
    QCOMPARE(mDelegate->calls, (QStringList{u"delay 60 1 1"_s, u"details 1"_s}));
    // Both show the stored lines, and the selection stays.
    QCOMPARE(timeline()->timeline().delaysMs, (QList<int>{0, 60}));
    QCOMPARE(events()->model()->rowCount(), 3);
    QCOMPARE(events()->selectedRow(), 2);
    QCOMPARE(timeline()->selectedRow(), 2);
}

void MacrosEventsTest::timelineFollowsTheSelectedMacro()
{
    QVERIFY(!timeline()->isVisible());
    fill({u"A"_s, u"B"_s}, 0);
    QVERIFY(timeline()->isVisible());
    QCOMPARE(timeline()->timeline().eventCount(), 3);
    timeline()->zoomIn();
    mDelegate->lines = {u"Key Press A"_s, u"0.500 seconds delay\n"_s, u"Key Release A"_s};
    list()->selectRow(1);
    QCOMPARE(timeline()->timeline().laneNames, QStringList{u"A"_s});
    QCOMPARE(timeline()->horizontalScrollBar()->maximum(), 0); // another macro is shown as a whole
    mDelegate->lines.clear();
    list()->selectRow(0);
    QVERIFY(!timeline()->isVisible()); // nothing to show: the hint has the room
    list()->deselectAll();
    QVERIFY(!timeline()->isVisible());
}

void MacrosEventsTest::timelineShowsWhatIsRecorded()
{
    fill({u"A"_s}, 0);
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QCOMPARE(timeline()->timeline().eventCount(), 0);
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"Key Press A"_s}}});
    QCOMPARE(timeline()->timeline().barsLeftDown().size(), 1);
    QVERIFY(timeline()->isVisible());
    // The key is down because the recording has not ended: nothing to warn of.
    QVERIFY(!outlet(u"mMacroTimelineNotice"_s)->isVisible());
    mController->recordEvents({{u"messagesArray"_s, QVariantList{u"0.040 seconds delay\n"_s, u"Key Release A"_s}}});
    QCOMPARE(timeline()->timeline().timesMs, (QList<qint64>{0, 40}));
    QCOMPARE(timeline()->selectedRow(), 2);
    mDelegate->calls.clear();
    QTest::mouseClick(timeline()->viewport(), Qt::LeftButton, {}, timeline()->eventRect(0).center());
    QCOMPARE(timeline()->selectedRow(), 2); // like the list, it only shows
}

void MacrosEventsTest::changeInTheTimelineEndsWithItsEvents_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<bool>("ends");
    QTest::newRow("other events of the macro") << 0 << true;
    QTest::newRow("another macro") << 1 << true;
    QTest::newRow("no macro") << 2 << true;
    QTest::newRow("no keyboard") << 3 << true;
    QTest::newRow("the same list again") << 4 << false;
}

void MacrosEventsTest::changeInTheTimelineEndsWithItsEvents()
{
    QFETCH(int, change);
    QFETCH(bool, ends);
    mDelegate->macros = numberedMacros({1, 2});
    mDelegate->refresh();
    list()->selectRow(0);
    QTest::mousePress(timeline()->viewport(), Qt::LeftButton, {}, timeline()->eventRect(1).center());
    const QPoint place = timeline()->eventRect(1).center() + QPoint(20, 0);
    QMouseEvent move(QEvent::MouseMove, place, timeline()->viewport()->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                     {});
    QCoreApplication::sendEvent(timeline()->viewport(), &move);
    QVERIFY(timeline()->isChangingPause());
    mDelegate->calls.clear();
    switch (change) {
    case 0: {
        QVariantMap macro = mDelegate->macros.at(0).toMap();
        macro[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{QVariantMap{{u"command"_s, 1}}}}};
        mDelegate->macros[0] = macro;
        mDelegate->lines = {u"Key Press A"_s};
        mDelegate->refresh();
        break;
    }
    case 1: list()->selectRow(1); break;
    case 2:
        mDelegate->macros.removeFirst();
        mDelegate->refresh();
        break;
    case 3: mController->setControlsState(false); break;
    default: mDelegate->refresh(); break;
    }
    QCOMPARE(timeline()->isChangingPause(), !ends);
    QTest::mouseRelease(timeline()->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(mDelegate->calls.filter(u"delay "_s).size(), ends ? 0 : 1);
}

void MacrosEventsTest::timelineIsOffWhileTheListIs()
{
    fill({u"A"_s}, 0);
    QVERIFY(timeline()->isEnabled());
    mController->setControlsState(false);
    QVERIFY(!timeline()->isEnabled());
    mController->setControlsState(true);
    QVERIFY(timeline()->isEnabled());
    events()->selectRow(2);
    choose("mSettingsMacroDetails", MacroCommands::edit);
    QVERIFY(!timeline()->isEnabled());
}

void MacrosEventsTest::keysLeftDownAreNamed()
{
    fill({u"A"_s, u"B"_s}, 0); // the lines end with a pressed button
    const auto *notice = outlet<QLabel>(u"mMacroTimelineNotice"_s);
    QVERIFY(notice->isVisible());
    QCOMPARE(notice->text(), u"Still down at the end: Left Button."_s);
    mDelegate->lines = {u"Key Release B"_s, u"0.020 seconds delay\n"_s, u"Key Press A"_s};
    list()->selectRow(1);
    QCOMPARE(notice->text(), u"Still down at the end: A.\nEvents without their press or release: 1."_s);
    mDelegate->lines = {u"Key Press A"_s, u"0.020 seconds delay\n"_s, u"Key Release A"_s};
    list()->selectRow(0);
    QVERIFY(!notice->isVisible());
}

void MacrosEventsTest::keysLeftDownAreReleased()
{
    using namespace MacroRecord;
    const auto event = [](int command, uint argument) {
        return QVariant(eventRecord({.command = command, .delayMs = 20, .argument = argument}));
    };
    const QVariantList stored{event(keyDown, 4), event(keyDown, 5), event(keyUp, 4)};
    mDelegate->macros = numberedMacros({1, 2});
    mDelegate->macros[1] = withEvents(mDelegate->macros.at(1).toMap(), stored);
    mDelegate->lines.clear();
    for (const QString &line : eventParser::getMessagesArray(stored))
        mDelegate->lines += line;
    mDelegate->refresh();
    list()->selectRow(1);
    mDelegate->calls.clear();
    auto *release = outlet<QPushButton>(u"mReleaseKeysAtEnd"_s);
    QVERIFY(release->isVisible());
    release->click();
    QCOMPARE(mDelegate->calls.filter(u"replace"_s).size(), 1);
    QVariantList released = MacroRecord::events(mDelegate->macros.at(1).toMap());
    QCOMPARE(released.size(), 4);
    const Event last = eventFields(released.takeLast().toMap());
    QCOMPARE(released, stored);
    QCOMPARE(last.command, keyUp);
    QCOMPARE(last.argument, 5U);
}

void MacrosEventsTest::keysAreReleasedInTheStoredEvents()
{
    using namespace MacroRecord;
    const QVariantList stored{eventRecord({.command = keyDown, .argument = 4}),
                              eventRecord({.command = keyDown, .delayMs = 70, .argument = 5})};
    mDelegate->macros = {withEvents(numberedMacros({1}).first().toMap(), stored)};
    mDelegate->lines = {u"Key Press A"_s, u"0.070 seconds delay\n"_s, u"Key Press B"_s};
    mDelegate->refresh();
    list()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::noDelay); // the record of the tab is now older than the lines
    const QVariantList changed = settingAllDelays(stored, 0);
    mDelegate->macros = {withEvents(mDelegate->macros.first().toMap(), changed)};
    outlet<QPushButton>(u"mReleaseKeysAtEnd"_s)->click();
    const QVariantList released = MacroRecord::events(mDelegate->macros.first().toMap());
    QCOMPARE(released.size(), 4);
    QCOMPARE(released.first(2), changed);
}

void MacrosEventsTest::unpairedEventsAreMarked()
{
    mDelegate->lines = {u"Key Release B"_s,         u"0.020 seconds delay\n"_s, u"Key Press A"_s,
                        u"0.020 seconds delay\n"_s, u"Key Press A"_s,           u"0.020 seconds delay\n"_s,
                        u"Key Release A"_s,         u"0.020 seconds delay\n"_s, u"Left Button down\n"_s};
    fill({u"A"_s}, 0);
    const QHash<int, QString> remarks{{0, u"This release has no press."_s},
                                      {2, u"This press has no release."_s},
                                      {8, u"This press has no release."_s}};
    const auto *model = events()->model();
    const auto icon = [model](int row) {
        return model->index(row, 0).data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
    };
    for (int row = 0; row < model->rowCount(); ++row) {
        const QString remark = remarks.value(row);
        QCOMPARE(model->index(row, 0).data(Qt::AccessibleDescriptionRole).toString(), remark);
        const QString tip = model->index(row, 0).data(Qt::ToolTipRole).toString();
        QVERIFY(tip.contains(model->index(row, 0).data().toString()));
        QCOMPARE(tip.contains(u"This "), !remark.isEmpty());
        QVERIFY(tip.contains(remark));
    }
    QVERIFY(icon(2) != icon(4)); // both are presses
    QVERIFY(icon(0) != icon(6)); // both are releases
    QCOMPARE(icon(2), icon(8));
}

void MacrosEventsTest::marksFollowTheEvents()
{
    fill({u"A"_s, u"B"_s}, 0); // ends with a pressed button
    const auto isMarked = [this](int row) {
        return !events()->model()->index(row, 0).data(Qt::AccessibleDescriptionRole).toString().isEmpty();
    };
    QVERIFY(isMarked(4));
    outlet<QPushButton>(u"mAddMacroDetails"_s)->click();
    QVERIFY(!isMarked(4)); // its release may be about to be recorded
    outlet<QPushButton>(u"mRecordMacroDetails"_s)->click();
    QVERIFY(isMarked(4));
    mDelegate->lines = {u"Key Press A"_s, u"0.020 seconds delay\n"_s, u"Key Release A"_s};
    list()->selectRow(1);
    QVERIFY(!isMarked(0));
    QVERIFY(!isMarked(2));
}

QTEST_MAIN(MacrosEventsTest)
#include "macroseventstest.moc"
