// SPDX-License-Identifier: MIT
// The commands of the macros tab: one table each for the macro list and the event list, serving the gear menus and the
// context menus, and when each command can be chosen. No state; any thread.
#pragma once

#include "platform/pulldownbutton.h"

namespace MacroCommands {

// Of the macro list
enum ListTag { rename = 1, newMacro = 2, importMacro = 3, exportMacro = 4, deleteMacro = 5 };

// Of the event list
enum EventTag { record = 1, edit = 2, deleteEvent = 3, deleteAllEvents = 4, copyDelay = 5, noDelay = 6 };

struct EventListState
{
    int lineCount = 0;
    int selectedRow = -1; ///< -1 for none; even rows are events, odd rows are delays
    int macroRow = -1;    ///< the selected macro's; -1 for none
};

/// The requests that read and replace an event name its row, and its macro's, in one byte each. A row above would name
/// another event or macro.
inline constexpr int lastRowInReach = 255;

/// Whether the requests for an event can name this row of this macro.
[[nodiscard]] bool isEventInReach(int macroRow, int eventRow);

/// Whether the event or the delay in this row of this macro can be edited. Delays can in every row of every macro:
/// their request has whole numbers.
[[nodiscard]] bool isEditableRow(int macroRow, int eventRow);

[[nodiscard]] const QList<MenuCommand> &ofList();
[[nodiscard]] const QList<MenuCommand> &ofEventList();

/// In both menus of an enabled macro list.
[[nodiscard]] bool isEnabledForList(int tag, bool isMacroSelected);

[[nodiscard]] bool isEnabledInEventGearMenu(int tag, const EventListState &state);

/// While the macro list is enabled. As in the gear menu, except that Edit is off with an event selected. Deliberate.
[[nodiscard]] bool isEnabledInEventContextMenu(int tag, const EventListState &state);

} // namespace MacroCommands
