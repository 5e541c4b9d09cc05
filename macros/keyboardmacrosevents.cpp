// SPDX-License-Identifier: MIT
// The events of the selected macro: their commands, and the sheets that edit a delay or an event.
#include "macros/keyboardmacroscontroller.h"

#include "base/daemonprotocol.h"
#include "base/plistnumbers.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "macros/eventline.h"
#include "macros/eventparser.h"
#include "macros/eventsclip.h"
#include "macros/macrodelegate.h"
#include "macros/macroinsertsheet.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelinepart.h"
#include "macros/macrotimelineview.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "macros/numberonlytextfield.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr int lowByte = 0xff;
constexpr int keepPage = -1;

} // namespace

MacroCommands::EventListState KeyboardMacrosController::eventListState() const
{
    return {.lineCount = int(mLines.shown().size()),
            .selectedRow = eventRow(),
            .macroRow = macroRow(),
            .isDelaySelected = mLines.isDelay(eventRow()),
            .hasSeveralRows = mMacroDetailsTableView->selectedRows().size() > 1,
            .canPaste = EventsClip::offersEvents(QGuiApplication::clipboard()->mimeData())};
}

void KeyboardMacrosController::selectEvent(int row)
{
    mMacroDetailsTableView->scrollRowToVisible(row);
    mMacroDetailsTableView->selectRow(row);
}

void KeyboardMacrosController::eventsWereEdited()
{
    mLines.forgetReply(); // without new lines, none are shown
    fetchLines();
    mMacroDetailsTableView->reloadData();
    if (mTimeline->view()->timeline().hasSharedNames)
        (void)hasPresentRecords(); // it takes the keys of one name for one key until the events come
}

void KeyboardMacrosController::clickDeleteMacroDetails(QObject *)
{
    const int row = eventRow();
    if (row < 0)
        return;
    if (mMacroDetailsTableView->selectedRows().size() > 1 || !MacroCommands::isEventInReach(macroRow(), row))
        return deleteSelectedEvents();
    if (mMacroDelegate)
        mMacroDelegate->removeEventAtIndexForMacroAtIndex(row, macroRow());
    eventsWereEdited();
    const int count = int(mLines.shown().size());
    if (count == 1)
        selectEvent(0);
    else
        selectEvent(row <= count - 2 ? row : count - 1);
    mMacroDetailsTableView->setFocus();
    mMacroDetailsTableView->reloadData();
}

void KeyboardMacrosController::clickMacroDetailsSettingsMenuItem(const QAction *item)
{
    mMacroTableView->endEditing();
    if (macroRow() < 0)
        return;
    switch (item->data().toInt()) {
    case MacroCommands::record: clickRecordMacroDetails(mRecordMacroDetails); break;
    case MacroCommands::edit: editSelectedEvent(); break;
    case MacroCommands::deleteEvent: clickDeleteMacroDetails(nullptr); break;
    case MacroCommands::deleteAllEvents: removeAllEvents(); break;
    case MacroCommands::copyDelay: copySelectedDelayToAll(); break;
    case MacroCommands::noDelay: removeAllDelays(); break;
    case MacroCommands::typeText: openTypeTextSheet(); break;
    default: editEvents(MacroCommands::EventTag(item->data().toInt())); break;
    }
}

void KeyboardMacrosController::removeAllEvents()
{
    if (mMacroDelegate)
        mMacroDelegate->removeAllEventsForMacroAtIndex(macroRow());
    eventsWereEdited();
}

void KeyboardMacrosController::copySelectedDelayToAll()
{
    const int row = eventRow();
    if (!mLines.isDelay(row) || eventListState().hasSeveralRows)
        return;
    // Deliberate: the first argument is the row whose delay is copied, not a time. The daemon looks the delay up.
    if (mMacroDelegate)
        mMacroDelegate->setAllEventsDelayForMacroAtIndexHasNoDelay(row, macroRow(), false);
    eventsWereEdited();
}

void KeyboardMacrosController::removeAllDelays()
{
    if (mMacroDelegate)
        mMacroDelegate->setAllEventsDelayForMacroAtIndexHasNoDelay(0, macroRow(), true);
    eventsWereEdited();
}

// The delay sheet

void KeyboardMacrosController::editSelectedEvent()
{
    const MacroCommands::EventListState state = eventListState();
    if (state.selectedRow < 0 || state.hasSeveralRows)
        return;
    if (state.isDelaySelected)
        openDelaySheet();
    else
        openEventSheet();
}

void KeyboardMacrosController::openDelaySheet()
{
    if (!mEditDelayWindow)
        return;
    mInputMacroDelay->clear();
    showPresentDelay();
    mEditDelayWindow->beginSheet(mMacrosWindow);
    mEventsSubject.note(mEditDelayWindow, eventsOfSelectedMacro());
    mInputMacroDelay->setFocus();
}

void KeyboardMacrosController::showPresentDelay()
{
    const std::optional<int> delayMs = delayMsOfLine(mLines.shown().value(eventRow()));
    const QString text = delayMs ? localizedFormat("lkeyPresentMacroDelay", {QString::number(*delayMs)}) : QString();
    mMacroDelayHint->setText(text);
    mMacroDelayHint->setVisible(delayMs.has_value());
    mInputMacroDelay->setAccessibleDescription(text);
}

void KeyboardMacrosController::clickMacroDelayOK(QObject *)
{
    mEditDelayWindow->endSheet();
    setDelayOfRow(eventRow(), mInputMacroDelay->integerValue());
}

void KeyboardMacrosController::clickMacroDelayCancel(QObject *)
{
    mEditDelayWindow->endSheet();
    mInputMacroDelay->clear();
}

// The event sheet

void KeyboardMacrosController::openEventSheet()
{
    if (!mEditEventWindow || !mMacroDelegate)
        return;
    mInputMacroEvent->clear();
    mEditEventWindow->beginSheet(mMacrosWindow);
    mEventsSubject.note(mEditEventWindow, eventsOfSelectedMacro());
    if (MacroCommands::isEventInReach(macroRow(), eventRow()))
        mSequenceDict = mMacroDelegate->getSequenceDetailsEventIndex(macroRow(), eventRow());
    State state = mState;
    state.activity = Activity::editingEvent;
    state.isCapturing = true;
    setActivity(state);
    mMacroEventEditHIDCode = 0;
    captureEditedEvent();
}

void KeyboardMacrosController::captureEditedEvent()
{
    if (mMacroDelegate)
        mMacroDelegate->startEditHID();
    setRecordButton(true);
}

void KeyboardMacrosController::closeEventSheet()
{
    setRecordButton(false);
    mEditEventWindow->endSheet();
    mMacroDetailsTableView->setFocus(); // it was disabled, so the focus had moved to Record
    fetchChangedLines();                // if they did not come before
}

void KeyboardMacrosController::clickMacroEventOK(QObject *)
{
    State state = mState;
    state.activity = Activity::idle;
    state.isCapturing = false;
    setActivity(state);
    if (mMacroDelegate)
        mMacroDelegate->stopSingleKeyRecording();
    mEventsSubject.note(nullptr); // the new lines must not cancel the sheet
    storeCapturedKey(MacroRecord::keyboardPage);
    closeEventSheet();
}

void KeyboardMacrosController::clickMacroEventCancel(QObject *)
{
    State state = mState;
    state.activity = Activity::idle; // Deliberate: isCapturing stays set. Leaving the tab, or Stop, ends the capture
    setActivity(state);              // once more.
    mMacroEventEditHIDCode = 0;
    // The removal of the keyboard has already ended the capture.
    if (mMacroDelegate && mHasDeviceConnected)
        mMacroDelegate->stopSingleKeyRecording();
    closeEventSheet();
}

void KeyboardMacrosController::storeCapturedKey(int page)
{
    if (!mMacroDelegate || macroRow() < 0 || eventRow() < 0)
        return;
    const auto withCapturedKey = [this, page](QVariantMap event) {
        event[SettingsKeys::argument] = int(mMacroEventEditHIDCode);
        if (page != keepPage)
            event[SettingsKeys::page] = page;
        return event;
    };
    if (!MacroCommands::isEventInReach(macroRow(), eventRow())) {
        if (mMacroEventEditHIDCode != 0)
            storeEventOutOfReach(eventRow(), withCapturedKey);
        return;
    }
    mSequenceDict = mMacroDelegate->getSequenceDetailsEventIndex(macroRow(), eventRow());
    if (mSequenceDict.isEmpty() || mMacroEventEditHIDCode == 0)
        return;
    mSequenceDict = withCapturedKey(mSequenceDict);
    mMacroDelegate->updateSequenceInfoEventIndexNewDict(macroRow(), eventRow(), mSequenceDict);
    eventsWereEdited();
}

void KeyboardMacrosController::singleKeyEvents(const QVariantMap &userInfo)
{
    const int key = PlistNumbers::integerValue(userInfo.value(DaemonProtocol::singleKey));
    const int modifier = PlistNumbers::integerValue(userInfo.value(DaemonProtocol::singleKeyModifier));
    // A modifier key pressed alone arrives as the modifier.
    const int code = modifier != 0 && (key & lowByte) == 0 ? modifier : key;
    if (isChoosingKey()) {
        if ((code & lowByte) == 0)
            return;
        mInsertWindow->chooseKey(code & lowByte);
        return captureInsertedKey(false);
    }
    mMacroEventEditHIDCode = quint8(code & lowByte);
    mInputMacroEvent->setText(eventParser::getStringWithHIDWithModifier(mMacroEventEditHIDCode, 0));
    if (!recordButtonReadsStop() || !isEditingMacro() || isMacroEventEdit())
        return;
    State state = mState;
    state.isCapturing = false;
    setActivity(state);
    if (mMacroDelegate)
        mMacroDelegate->stopSingleKeyRecording();
    // Deliberate: the event keeps its page. Only the sheet turns an event into one of the keyboard.
    storeCapturedKey(keepPage);
    setRecordButton(false);
}
