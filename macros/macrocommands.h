// SPDX-License-Identifier: MIT
// The commands of the macros tab, and when each can be chosen. One table for the macro list and one for the event list
// serve the gear menus and the context menus. No state; any thread.
#pragma once

#include "platform/pulldownbutton.h"

namespace MacroCommands {

// Of the macro list
enum ListTag { rename = 1, newMacro = 2, importMacro = 3, exportMacro = 4, deleteMacro = 5, duplicateMacro = 6 };

// Of the event list
enum EventTag {
    record = 1,
    edit = 2,
    deleteEvent = 3,
    deleteAllEvents = 4,
    copyDelay = 5,
    noDelay = 6,
    typeText = 20,
    cutEvents = 21,
    copyEvents = 22,
    pasteEvents = 23,
    moveUp = 24,
    moveDown = 25,
    setPause = 26,
    scalePauses = 27,
    insertEvents = 28,
};

struct EventListState
{
    int lineCount = 0;
    int selectedRow = -1; ///< -1 for none, one of several
    int macroRow = -1;    ///< the row of the selected macro; -1 for none
    bool isDelaySelected = false;
    bool hasSeveralRows = false; ///< more than `selectedRow` is selected
    bool canPaste = false;       ///< the clipboard has events
};

/// The requests that read and replace an event have one byte each for its row and its macro's row. Rows and macros
/// above are edited by the request that replaces all events of a macro, which has no such limit.
inline constexpr int lastRowInReach = 255;

/// True if the requests for one event are used for this row of this macro.
[[nodiscard]] bool isEventInReach(int macroRow, int eventRow);

[[nodiscard]] const QList<MenuCommand> &ofList();
[[nodiscard]] const QList<MenuCommand> &ofEventList();

/// For both menus of an enabled macro list.
[[nodiscard]] bool isEnabledForList(int tag, bool isMacroSelected);

[[nodiscard]] bool isEnabledInEventGearMenu(int tag, const EventListState &state);

/// For an enabled macro list. Same as in the gear menu, except that Edit is off with an event selected. Deliberate.
[[nodiscard]] bool isEnabledInEventContextMenu(int tag, const EventListState &state);

} // namespace MacroCommands
