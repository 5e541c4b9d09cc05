// SPDX-License-Identifier: MIT
// The right half of the macros tab: recording, and editing the events of the selected macro.
#include "macros/keyboardmacroscontroller.h"

#include "app/util/daemonprotocol.h"
#include "app/util/settingskeys.h"
#include "app/util/text.h"
#include "macros/eventparser.h"
#include "macros/macrodelegate.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "macros/numberonlytextfield.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

// What the main controller passes as the label of this tab.
constexpr QLatin1StringView macrosTabLabel{"Macros"};
constexpr int lowByte = 0xff;
constexpr int keepPage = -1;

} // namespace

bool KeyboardMacrosController::isRecordingOrCapturing() const
{
    return mIsRecording || mIsAppendMacro || mIsEditingMacro;
}

MacroCommands::EventListState KeyboardMacrosController::eventListState() const
{
    return {int(mMacroDetailsArray.size()), eventRow()};
}

void KeyboardMacrosController::setRecordButton(bool readsStop)
{
    mRecordButtonReadsStop = readsStop;
    mRecordMacroDetails->setText(localizedText(readsStop ? "lkeyStop" : "lkeyRecord"));
    mRecordMacroDetails->setChecked(readsStop);
}

void KeyboardMacrosController::enableDeleteEventBySelection()
{
    mDeleteMacroDetails->setEnabled(mHasDeviceConnected && eventRow() >= 0);
}

// Recording

void KeyboardMacrosController::clickRecordMacroDetails(QObject *)
{
    mIsStopRecording = false;
    if (mRecordButtonReadsStop)
        stopRecording();
    else if (macroRow() >= 0)
        startRecording();
    else
        setRecordButton(false); // a click has toggled it
}

void KeyboardMacrosController::startRecording()
{
    mIsRecording = true;
    mIsRenamingMacroName = false;
    mMacroDetailsArray.clear();
    mMacroDetailsTableView->reloadData();
    setRecordButton(true);
    setStateOfTableButtonsWithState(false);
    setStateOfMacroTableWithState(false);
    enableDeleteEventBySelection();
    if (mMacroDelegate)
        mMacroDelegate->startMacroRecordingMacroIndex(mIsAppendMacro ? 1 : 0, macroRow());
}

void KeyboardMacrosController::stopRecording()
{
    mIsRecording = false;
    mIsStopRecording = true;
    setRecordButton(false);
    setStateOfTableButtonsWithState(true);
    setStateOfMacroTableWithState(true);
    const bool isAppended = mIsAppendMacro;
    if (mMacroDelegate && mIsEditingMacro) {
        mMacroDelegate->stopSingleKeyRecording();
    } else if (mMacroDelegate) {
        mMacroDelegate->stopMacroRecording();
        mMacroDelegate->saveRecordedEventsForMacroAtIndexIsNewRecording(macroRow(), isAppended ? 1 : 0);
        fetchLines();
    }
    mIsEditingMacro = false;
    mIsAppendMacro = false;
    updateEventButtons();
}

void KeyboardMacrosController::clickAddMacroDetails(QObject *)
{
    if (macroRow() < 0)
        return;
    mIsAppendMacro = true;
    mIsStopRecording = false;
    setStateOfTableButtonsWithState(false);
    setStateOfMacroTableWithState(false);
    setRecordButton(true);
    mMacroDetailsTableView->deselectAll();
    if (mMacroDelegate)
        mMacroDelegate->startMacroRecordingMacroIndex(1, macroRow());
}

void KeyboardMacrosController::recordEvents(const QVariantMap &userInfo)
{
    if (mIsStopRecording)
        return;
    const QVariantList lines = userInfo.value(DaemonProtocol::messagesArray).toList();
    mMacroDetailsTableView->deselectAll();
    for (const QVariant &line : lines)
        mMacroDetailsArray.append(line.toString());
    mMacroDetailsTableView->reloadData();
    selectEvent(int(mMacroDetailsArray.size()) - 1);
}

void KeyboardMacrosController::stopAllMacroRecording()
{
    if (!isRecordingOrCapturing())
        return;
    setRecordButton(true);
    clickRecordMacroDetails(mRecordMacroDetails);
}

void KeyboardMacrosController::checkMacroRecordingStatus(const QString &label)
{
    if (label != macrosTabLabel) {
        stopAllMacroRecording();
        return;
    }
    setRecordButton(false);
    if (!mHasDeviceConnected)
        return;
    mIsRecording = false;
    mIsStopRecording = true;
    setStateOfTableButtonsWithState(true);
    enableDeleteEventBySelection();
}

// The event list

void KeyboardMacrosController::selectEvent(int row)
{
    mMacroDetailsTableView->scrollRowToVisible(row);
    mMacroDetailsTableView->selectRow(row);
}

void KeyboardMacrosController::clickDeleteMacroDetails(QObject *)
{
    const int row = eventRow();
    if (row < 0)
        return;
    if (mMacroDelegate)
        mMacroDelegate->removeEventAtIndexForMacroAtIndex(row, macroRow());
    fetchLines();
    const int count = int(mMacroDetailsArray.size());
    if (count == 1)
        selectEvent(0);
    else
        selectEvent(row <= count - 2 ? row : count - 1);
    mMacroDetailsTableView->setFocus();
    mMacroDetailsTableView->reloadData();
}

void KeyboardMacrosController::clickMacroDetailsSettingsMenuItem(const QAction *item)
{
    switch (item->data().toInt()) {
    case MacroCommands::record: clickRecordMacroDetails(mRecordMacroDetails); break;
    case MacroCommands::edit: editSelectedEvent(); break;
    case MacroCommands::deleteEvent: clickDeleteMacroDetails(nullptr); break;
    case MacroCommands::deleteAllEvents: removeAllEvents(); break;
    case MacroCommands::copyDelay: copySelectedDelayToAll(); break;
    case MacroCommands::noDelay: removeAllDelays(); break;
    default: break;
    }
}

void KeyboardMacrosController::removeAllEvents()
{
    if (mMacroDelegate)
        mMacroDelegate->removeAllEventsForMacroAtIndex(macroRow());
    fetchLines();
    mMacroDetailsTableView->reloadData();
}

void KeyboardMacrosController::copySelectedDelayToAll()
{
    const int row = eventRow();
    if (mMacroDetailsArray.isEmpty() || row <= 0 || row % 2 == 0)
        return;
    // The first argument carries the row whose delay is copied, not a time. Deliberate: the daemon looks it up.
    if (mMacroDelegate)
        mMacroDelegate->setAllEventsDelayForMacroAtIndexHasNoDelay(row, macroRow(), false);
    fetchLines();
    mMacroDetailsTableView->reloadData();
}

void KeyboardMacrosController::removeAllDelays()
{
    if (mMacroDelegate)
        mMacroDelegate->setAllEventsDelayForMacroAtIndexHasNoDelay(0, macroRow(), true);
    fetchLines();
    mMacroDetailsTableView->reloadData();
}

// The delay sheet

void KeyboardMacrosController::editSelectedEvent()
{
    const int row = eventRow();
    if (row < 0)
        return;
    if (row % 2 == 1)
        openDelaySheet();
    else
        openEventSheet();
}

void KeyboardMacrosController::openDelaySheet()
{
    if (!mEditDelayWindow)
        return;
    mInputMacroDelay->clear();
    mEditDelayWindow->beginSheet(mMacrosWindow);
    mInputMacroDelay->setFocus();
}

void KeyboardMacrosController::clickMacroDelayOK(QObject *)
{
    mEditDelayWindow->endSheet();
    if (mMacroDelegate)
        mMacroDelegate->setNewDelayAtMacroEventIndexForMacroAtIndex(mInputMacroDelay->integerValue(), eventRow(),
                                                                    macroRow());
    fetchLines();
    mMacroDetailsTableView->reloadData();
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
    setStateOfTableButtonsWithState(false);
    setStateOfMacroTableWithState(false);
    mInputMacroEvent->clear();
    mEditEventWindow->beginSheet(mMacrosWindow);
    mSequenceDict = mMacroDelegate->getSequenceDetailsEventIndex(macroRow(), eventRow());
    mIsMacroEventEdit = true;
    mIsEditingMacro = true;
    mMacroEventEditHIDCode = 0;
    mMacroDelegate->startEditHID();
    setRecordButton(true);
}

void KeyboardMacrosController::closeEventSheet()
{
    setRecordButton(false);
    // The keyboard may have been pulled out while the sheet was up.
    setStateOfTableButtonsWithState(mHasDeviceConnected);
    setStateOfMacroTableWithState(mHasDeviceConnected);
    updateEventButtons();
    mEditEventWindow->endSheet();
}

void KeyboardMacrosController::clickMacroEventOK(QObject *)
{
    mIsEditingMacro = false;
    mIsMacroEventEdit = false;
    if (mMacroDelegate)
        mMacroDelegate->stopSingleKeyRecording();
    storeCapturedKey(MacroRecord::keyboardPage);
    closeEventSheet();
}

void KeyboardMacrosController::clickMacroEventCancel(QObject *)
{
    mIsMacroEventEdit = false;
    mIsEditingMacro = false;
    mMacroEventEditHIDCode = 0;
    if (mMacroDelegate)
        mMacroDelegate->stopSingleKeyRecording();
    closeEventSheet();
}

void KeyboardMacrosController::storeCapturedKey(int page)
{
    if (!mMacroDelegate)
        return;
    mSequenceDict = mMacroDelegate->getSequenceDetailsEventIndex(macroRow(), eventRow());
    if (mSequenceDict.isEmpty() || mMacroEventEditHIDCode == 0)
        return;
    mSequenceDict[SettingsKeys::argument] = int(mMacroEventEditHIDCode);
    if (page != keepPage)
        mSequenceDict[SettingsKeys::page] = page;
    mMacroDelegate->updateSequenceInfoEventIndexNewDict(macroRow(), eventRow(), mSequenceDict);
    fetchLines();
}

void KeyboardMacrosController::singleKeyEvents(const QVariantMap &userInfo)
{
    const int key = userInfo.value(DaemonProtocol::singleKey).toInt();
    const int modifier = userInfo.value(DaemonProtocol::singleKeyModifier).toInt();
    // A modifier key pressed alone comes as the modifier.
    const int code = modifier != 0 && (key & lowByte) == 0 ? modifier : key;
    mMacroEventEditHIDCode = quint8(code & lowByte);
    mInputMacroEvent->setText(eventParser::getStringWithHIDWithModifier(mMacroEventEditHIDCode, 0));
    if (!mRecordButtonReadsStop || !mIsEditingMacro || mIsMacroEventEdit)
        return;
    mIsEditingMacro = false;
    if (mMacroDelegate)
        mMacroDelegate->stopSingleKeyRecording();
    // The event's page stays. Deliberate: only the sheet turns an event into one of the keyboard.
    storeCapturedKey(keepPage);
    setRecordButton(false);
}
