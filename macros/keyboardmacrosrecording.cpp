// SPDX-License-Identifier: MIT
// Recording the events of the selected macro, new or appended, and the ways in which it stops.
#include "macros/keyboardmacroscontroller.h"

#include "base/daemonprotocol.h"
#include "base/text.h"
#include "macros/macrodelegate.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrodetailssubclass.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>

namespace {

// The label of this tab, as passed by the main controller.
constexpr QLatin1StringView macrosTabLabel{"Macros"};

} // namespace

// The activity

bool KeyboardMacrosController::isRecording() const
{
    return mActivity == Activity::recording || mActivity == Activity::appendingAgain;
}

bool KeyboardMacrosController::isAppendMacro() const
{
    return mActivity == Activity::appending || mActivity == Activity::appendingAgain
           || mActivity == Activity::stoppingAppended;
}

bool KeyboardMacrosController::isRecordingOrCapturing() const
{
    return hasRecording() || mIsEditingMacro;
}

void KeyboardMacrosController::setActivity(Activity activity)
{
    mActivity = activity;
    Q_EMIT captureAreaChanged();
}

QWidget *KeyboardMacrosController::captureArea() const
{
    switch (mActivity) {
    case Activity::idle:
    case Activity::stoppingAppended: return nullptr;
    case Activity::recording:
    case Activity::appending:
    case Activity::appendingAgain: return mEventPart;
    case Activity::editingEvent: return mEditEventWindow;
    }
    return nullptr;
}

void KeyboardMacrosController::showCaptureSource(const CaptureSource &source)
{
    const QString hint = captureHint(source);
    const QString prompt = captureText(
        source,
        {.unknown = "lkeyEnterMacroEvent", .window = "lkeyTypeKeyHere", .realKeyboards = "lkeyEnterMacroEventOn"});
    mEnterMacroEventLabel->setText(prompt);
    mInputMacroEvent->setAccessibleName(prompt);
    mInputMacroEvent->setAccessibleDescription(hint);
    mMacroEventHint->setText(hint);
    mMacroEventHint->setVisible(!hint.isEmpty());
    const QString request = captureText(
        source, {.unknown = "lkeyHoldEscape", .window = "lkeyTypeMacroHere", .realKeyboards = "lkeyRecordingOn"});
    const bool hasHint = !hint.isEmpty() && source.kind != CaptureSource::Kind::unknown;
    mRecordingHint->setText(hasHint ? request + u'\n' + hint : request);
    describeRecordButton();
}

/// To users who do not see the hint.
void KeyboardMacrosController::describeRecordButton()
{
    mRecordMacroDetails->setAccessibleDescription(mRecordButtonReadsStop ? mRecordingHint->text() : QString());
}

void KeyboardMacrosController::showRecording()
{
    updatePlaceholders();
    updateLineColor();
}

void KeyboardMacrosController::takeNoMoreEvents()
{
    mIsStopRecording = true;
    if (isAppendMacro())
        setActivity(Activity::stoppingAppended);
    else if (isRecording())
        setActivity(Activity::idle);
}

void KeyboardMacrosController::setRecordButton(bool readsStop)
{
    mRecordButtonReadsStop = readsStop;
    mRecordMacroDetails->setText(localizedText(readsStop ? "lkeyStop" : "lkeyRecord"));
    mRecordMacroDetails->setIcon(EventIcons::recordIcon(readsStop));
    mRecordMacroDetails->setChecked(readsStop);
    mRecordMacroDetails->setAutoDefault(readsStop); // Return also stops
    describeRecordButton();
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
        setRecordButton(false); // the click has toggled it
}

void KeyboardMacrosController::startRecording()
{
    setActivity(isAppendMacro() ? Activity::appendingAgain : Activity::recording);
    mIsRenamingMacroName = false;
    mLines.clear();
    mMacroDetailsTableView->reloadData();
    setRecordButton(true);
    showRecording();
    setStateOfTableButtonsWithState(false);
    setStateOfMacroTableWithState(false);
    enableDeleteEventBySelection();
    mRecordMacroDetails->setFocus();
    if (mMacroDelegate)
        mMacroDelegate->startMacroRecordingMacroIndex(isAppendMacro() ? 1 : 0, macroRow());
}

void KeyboardMacrosController::stopRecording()
{
    const bool wasRecording = hasRecording();
    const bool isAppended = isAppendMacro();
    takeNoMoreEvents();
    setRecordButton(false);
    setStateOfTableButtonsWithState(true);
    setStateOfMacroTableWithState(true);
    const QScopedValueRollback replacingLines(mIsReplacingLines, true);
    if (mMacroDelegate && mIsEditingMacro) {
        mMacroDelegate->stopSingleKeyRecording();
        if (wasRecording)
            fetchLines(); // replaces the recorded lines, which are not stored
    } else if (mMacroDelegate) {
        mMacroDelegate->stopMacroRecording();
        mMacroDelegate->saveRecordedEventsForMacroAtIndexIsNewRecording(macroRow(), isAppended ? 1 : 0);
        fetchLines();
    }
    mIsEditingMacro = false;
    const bool isSheetUp = isMacroEventEdit();
    setActivity(Activity::idle);
    if (isSheetUp) {
        // The capture has ended; the sheet would wait for ever.
        mMacroEventEditHIDCode = 0;
        mEditEventWindow->endSheet();
    }
    showRecording();
    updateEventButtons();
}

void KeyboardMacrosController::abandonRecording()
{
    setActivity(Activity::idle);
    mIsStopRecording = true;
    setRecordButton(false);
    setStateOfTableButtonsWithState(true);
    setStateOfMacroTableWithState(true);
    mLines.clear();
    linesHaveChanged();
    showRecording();
    if (mMacroDelegate)
        mMacroDelegate->stopMacroRecording();
}

void KeyboardMacrosController::clickAddMacroDetails(QObject *)
{
    if (macroRow() < 0)
        return;
    setActivity(Activity::appending);
    mIsStopRecording = false;
    setStateOfTableButtonsWithState(false);
    setStateOfMacroTableWithState(false);
    setRecordButton(true);
    showRecording();
    mRecordMacroDetails->setFocus();
    mMacroDetailsTableView->deselectAll();
    if (mMacroDelegate)
        mMacroDelegate->startMacroRecordingMacroIndex(1, macroRow());
}

void KeyboardMacrosController::recordEvents(const QVariantMap &userInfo)
{
    // The daemon reports every recording, also one that another client has started.
    if (!hasRecording() || mActivity == Activity::stoppingAppended)
        return;
    if (userInfo.value(DaemonProtocol::isMacroFull).toBool())
        report(StatusReport::Event::macroFull, MacroRecord::name(macroAt(macroRow())));
    const QVariantList lines = userInfo.value(DaemonProtocol::messagesArray).toList();
    mMacroDetailsTableView->deselectAll();
    for (const QVariant &line : lines)
        mLines.append(line.toString());
    mMacroDetailsTableView->reloadData();
    selectEvent(int(mLines.shown().size()) - 1);
}

void KeyboardMacrosController::stopAllMacroRecording()
{
    if (!isRecordingOrCapturing())
        return;
    setRecordButton(true);
    clickRecordMacroDetails(mRecordMacroDetails);
}

void KeyboardMacrosController::keyboardCameBack()
{
    if (isMacroEventEdit())
        captureEditedEvent();
    else if (hasRecording())
        stopAllMacroRecording();
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
    takeNoMoreEvents();
    setStateOfTableButtonsWithState(true);
    enableDeleteEventBySelection();
}
