// SPDX-License-Identifier: MIT
// "Type Text…": turns a text into events of the selected macro.
#include "macros/keyboardmacroscontroller.h"

#include "macros/macrodelegate.h"
#include "macros/macrorecord.h"
#include "macros/macrotypetext.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "typing/typedtext.h"

void KeyboardMacrosController::openTypeTextSheet()
{
    if (!mMacroDelegate || macroRow() < 0)
        return;
    if (!hasPresentRecords() || macroRow() < 0)
        return; // another client may have deleted it
    mEventsBeforeTyping = MacroRecord::events(macroAt(macroRow()));
    if (!mTypeTextWindow) { // later than the other sheets: it loads the keyboard layout
        mTypeTextWindow = new MacroTypeText;
        connect(mTypeTextWindow, &MacroTypeText::insertRequested, this, &KeyboardMacrosController::insertTypedText);
    }
    const std::optional<int> selected =
        eventRow() < 0 ? std::nullopt : MacroRecord::eventIndexOfRow(mEventsBeforeTyping, eventRow());
    mTypeTextWindow->ask(mMacrosWindow, mEventsBeforeTyping, MacroRecord::capacity(mMacrosSettingsArray, macroRow()),
                         selected);
    mEventsSubject.note(mTypeTextWindow, eventsOfSelectedMacro());
}

void KeyboardMacrosController::insertTypedText(const QList<MacroRecord::Event> &typed, int index, int pauseMs)
{
    const QVariantList events = insertingTyped(mEventsBeforeTyping, index, typed, pauseMs);
    const int firstRow = index == 0 ? 0 : MacroRecord::rowCount(events.first(index + 1)) - 1;
    mEventsSubject.note(nullptr); // the new lines must not end the sheet before the text is known to be stored
    const bool isStored = mMacroDelegate->replaceEventsOfMacroAtIndex(macroRow(), mEventsBeforeTyping, events);
    mTypeTextWindow->endSheet();
    if (!isStored)
        return;
    mTypeTextWindow->textWasInserted();
    selectEvent(firstRow);
    mMacroDetailsTableView->setFocus();
}
