// SPDX-License-Identifier: MIT
#include "macros/macrocommands.h"

namespace MacroCommands {

const QList<MenuCommand> &ofList()
{
    static const QList<MenuCommand> commands{
        {rename, "lkeyRename"},      {newMacro, "lkeyNew"},       {importMacro, "lkeyImport"},
        {exportMacro, "lkeyExport"}, {deleteMacro, "lkeyDelete"}, {duplicateMacro, "lkeyDuplicateMacro"},
    };
    return commands;
}

const QList<MenuCommand> &ofEventList()
{
    static const QList<MenuCommand> commands{
        {record, "lkeyRecord"},
        {edit, "lkeyEdit"},
        {deleteEvent, "lkeyDeleteEvent"},
        {deleteAllEvents, "lkeyDeleteAllEvents"},
        {copyDelay, "lkeyCopyDelay"},
        {noDelay, "lkeyNoDelay"},
        {insertEvents, "lkeyInsertEvents"},
        {typeText, "lkeyTypeText"},
        {cutEvents, "lkeyCutEvents"},
        {copyEvents, "lkeyCopyEvents"},
        {pasteEvents, "lkeyPasteEvents"},
        {moveUp, "lkeyMoveEventsUp"},
        {moveDown, "lkeyMoveEventsDown"},
        {setPause, "lkeySetPause"},
        {scalePauses, "lkeyScalePauses"},
    };
    return commands;
}

bool isEventInReach(int macroRow, int eventRow)
{
    return macroRow >= 0 && macroRow <= lastRowInReach && eventRow >= 0 && eventRow <= lastRowInReach;
}

bool isEnabledForList(int tag, bool isMacroSelected)
{
    return isMacroSelected || tag == newMacro || tag == importMacro;
}

bool isEnabledInEventGearMenu(int tag, const EventListState &state)
{
    if (tag == typeText || tag == insertEvents)
        return state.macroRow >= 0;
    if (tag == pasteEvents)
        return state.macroRow >= 0 && state.canPaste;
    if (state.lineCount == 0)
        return tag == record;
    if (state.selectedRow < 0)
        return tag == record || tag == deleteAllEvents || tag == noDelay;
    if (state.hasSeveralRows && (tag == edit || tag == copyDelay))
        return false;
    return tag != copyDelay || state.isDelaySelected;
}

bool isEnabledInEventContextMenu(int tag, const EventListState &state)
{
    const bool isEventSelected = state.lineCount > 0 && state.selectedRow >= 0 && !state.isDelaySelected;
    return isEnabledInEventGearMenu(tag, state) && !(tag == edit && isEventSelected);
}

} // namespace MacroCommands
