// SPDX-License-Identifier: MIT
// Recording the events of the selected macro, new or appended, and the ways in which it stops.
#include "macros/keyboardmacroscontroller.h"

#include "base/daemonprotocol.h"
#include "base/text.h"
#include "macros/macrodelegate.h"
#include "macros/macroinsertsheet.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "platform/mnemonics.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <utility>

namespace {

// The label of this tab, as passed by the main controller.
constexpr QLatin1StringView macrosTabLabel{"Macros"};

} // namespace

// The activity

bool KeyboardMacrosController::isRecording() const
{
    return activity() == Activity::recording || activity() == Activity::appendingAgain;
}

bool KeyboardMacrosController::isAppendMacro() const
{
    return activity() == Activity::appending || activity() == Activity::appendingAgain
           || activity() == Activity::stoppingAppended;
}

bool KeyboardMacrosController::isRecordingOrCapturing() const
{
    return hasRecording() || isEditingMacro();
}

void KeyboardMacrosController::setActivity(const State &state)
{
    const State before = std::exchange(mState, state);
    const bool hasBegunAgain = hasRecording() && mState.readsStop && !before.readsStop;
    const bool hasChanged = mState.activity != before.activity || hasBegunAgain;
    if (hasChanged) {
        const bool isFree = !captureArea();
        setStateOfTableButtonsWithState(isFree);
        setStateOfMacroTableWithState(isFree);
    }
    showRecordButton();
    updatePlaceholders();
    updateLineColor();
    updateEventButtons();
    if (mInsertWindow)
        mInsertWindow->showCapturing(isChoosingKey());
    if (hasChanged)
        Q_EMIT captureAreaChanged();
}

QWidget *KeyboardMacrosController::captureArea() const
{
    switch (activity()) {
    case Activity::idle:
    case Activity::stoppingAppended: return nullptr;
    case Activity::recording:
    case Activity::appending:
    case Activity::appendingAgain: return mEventPart;
    case Activity::editingEvent: return mEditEventWindow;
    case Activity::choosingKey: return mInsertWindow ? mInsertWindow->captureArea() : nullptr;
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
    if (mInsertWindow)
        mInsertWindow->showSource(source);
    describeRecordButton();
}

/// To users who do not see the hint.
void KeyboardMacrosController::describeRecordButton()
{
    mRecordMacroDetails->setAccessibleDescription(recordButtonReadsStop() ? mRecordingHint->text() : QString());
}

auto KeyboardMacrosController::stateWithoutEvents() const -> State
{
    State state = mState;
    if (isAppendMacro())
        state.activity = Activity::stoppingAppended;
    else if (isRecording())
        state.activity = Activity::idle;
    state.readsStop = false;
    state.wasStopped = true;
    return state;
}

void KeyboardMacrosController::beginRecording(Activity recording)
{
    State state = mState;
    state.activity = recording;
    state.readsStop = true;
    state.wasStopped = false;
    setActivity(state);
}

void KeyboardMacrosController::setRecordButton(bool readsStop)
{
    State state = mState;
    state.readsStop = readsStop;
    setActivity(state);
}

void KeyboardMacrosController::showRecordButton()
{
    const bool readsStop = recordButtonReadsStop();
    Mnemonics::setText(mRecordMacroDetails, localizedText(readsStop ? "lkeyStop" : "lkeyRecord"));
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
    if (recordButtonReadsStop())
        return stopRecording();
    if (macroRow() >= 0)
        return startRecording();
    State state = mState; // the click has toggled the button
    state.wasStopped = false;
    setActivity(state);
}

void KeyboardMacrosController::startRecording()
{
    beginRecording(isAppendMacro() ? Activity::appendingAgain : Activity::recording);
    mIsRenamingMacroName = false;
    mLines.clear();
    mMacroDetailsTableView->reloadData();
    updateTimeline();
    enableDeleteEventBySelection();
    mRecordMacroDetails->setFocus();
    if (mMacroDelegate)
        mMacroDelegate->startMacroRecordingMacroIndex(isAppendMacro() ? 1 : 0, macroRow());
}

void KeyboardMacrosController::stopRecording()
{
    const bool wasRecording = hasRecording();
    const bool isAppended = isAppendMacro();
    setActivity(stateWithoutEvents());
    const auto replacing = mLines.beginReplacement();
    if (mMacroDelegate && isEditingMacro()) {
        mMacroDelegate->stopSingleKeyRecording();
        if (wasRecording)
            fetchLines(); // replaces the recorded lines, which are not stored
    } else if (mMacroDelegate) {
        mMacroDelegate->stopMacroRecording();
        mMacroDelegate->saveRecordedEventsForMacroAtIndexIsNewRecording(macroRow(), isAppended ? 1 : 0);
        fetchLines();
    }
    const bool isSheetUp = isMacroEventEdit();
    setActivity({.wasStopped = true});
    if (isSheetUp) {
        // The capture has ended; the sheet would wait for ever.
        mMacroEventEditHIDCode = 0;
        mEditEventWindow->endSheet();
    }
}

void KeyboardMacrosController::abandonRecording()
{
    State state = stateWithoutEvents();
    state.activity = Activity::idle; // an appended recording has nothing left to save
    setActivity(state);
    mLines.clear();
    linesHaveChanged();
    if (mMacroDelegate)
        mMacroDelegate->stopMacroRecording();
}

void KeyboardMacrosController::clickAddMacroDetails(QObject *)
{
    if (macroRow() < 0)
        return;
    beginRecording(Activity::appending);
    mRecordMacroDetails->setFocus();
    mMacroDetailsTableView->deselectAll();
    if (mMacroDelegate)
        mMacroDelegate->startMacroRecordingMacroIndex(1, macroRow());
}

void KeyboardMacrosController::recordEvents(const QVariantMap &userInfo)
{
    // The daemon reports every recording, also one that another client has started.
    if (!hasRecording() || activity() == Activity::stoppingAppended)
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
    if (isRecordingOrCapturing())
        stopRecording();
}

void KeyboardMacrosController::keyboardCameBack()
{
    if (isMacroEventEdit())
        captureEditedEvent();
    else if (isChoosingKey() && mMacroDelegate)
        mMacroDelegate->startEditHID();
    else if (hasRecording())
        stopAllMacroRecording();
}

void KeyboardMacrosController::checkMacroRecordingStatus(const QString &label)
{
    if (label != macrosTabLabel) {
        stopAllMacroRecording();
        return;
    }
    if (!mHasDeviceConnected)
        return setRecordButton(false);
    setActivity(stateWithoutEvents());
    setStateOfTableButtonsWithState(true);
    enableDeleteEventBySelection();
}
