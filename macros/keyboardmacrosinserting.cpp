// SPDX-License-Identifier: MIT
// "Insert…": single events and pauses without a recording, and the capture of the key for them.
#include "macros/keyboardmacroscontroller.h"

#include "macros/macrodelegate.h"
#include "macros/macroinsertsheet.h"
#include "macros/nstableviewmacrodetailssubclass.h"

void KeyboardMacrosController::buildInsertSheet()
{
    mInsertWindow = new MacroInsertSheet;
    connect(mInsertWindow, &MacroInsertSheet::insertRequested, this, &KeyboardMacrosController::insertEvents);
    connect(mInsertWindow, &MacroInsertSheet::captureRequested, this, &KeyboardMacrosController::captureInsertedKey);
}

void KeyboardMacrosController::openInsertSheet()
{
    const auto selected = readSelectedEvents();
    if (!selected || macroRow() < 0 || !mInsertWindow)
        return; // another client may have deleted the macro
    mEventsBeforeInsertion = selected->all;
    mInsertWindow->ask(mMacrosWindow, selected->all, MacroRecord::capacity(mMacrosSettingsArray, macroRow()),
                       selected->indexes);
    mEventsSubject.note(mInsertWindow, eventsOfSelectedMacro());
}

void KeyboardMacrosController::insertEvents(const MacroInsertion::Outcome &outcome)
{
    mEventsSubject.note(nullptr);
    if (mMacroDelegate->replaceEventsOfMacroAtIndex(macroRow(), mEventsBeforeInsertion, outcome.events))
        selectEventRows(outcome.rows);
    mMacroDetailsTableView->setFocus();
}

void KeyboardMacrosController::captureInsertedKey(bool begins)
{
    if (begins == isChoosingKey())
        return;
    State state = mState;
    state.activity = begins ? Activity::choosingKey : Activity::idle;
    state.isCapturing = begins;
    setActivity(state);
    if (mMacroDelegate && begins)
        mMacroDelegate->startEditHID();
    else if (mMacroDelegate && mHasDeviceConnected) // its removal has already ended the capture
        mMacroDelegate->stopSingleKeyRecording();
}
