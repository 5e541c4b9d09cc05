// SPDX-License-Identifier: MIT
// The nine commands of the profiles tab: one table for the gear menu and the context menu, and when each can be chosen.
// No state; any thread.
#pragma once

#include "platform/pulldownbutton.h"

namespace ProfileCommands {

enum Tag {
    rename = 1,
    newProfile = 2,
    importProfile = 3,
    exportProfile = 4,
    deleteProfile = 5,
    copy = 6,
    assignApplication = 7,
    removeApplication = 8,
    restoreDefault = 9,
};

/// The keyboard holds this many profiles.
inline constexpr int maximumProfileCount = 20;

struct State
{
    int selectedRow = -1; ///< -1 for none
    int profileCount = 0;
    bool hasApplication = false; ///< the selected profile is bound to an application
};

/// All nine, in the order of both menus.
[[nodiscard]] const QList<MenuCommand> &all();

/// Whether the gear menu enables the command.
[[nodiscard]] bool isEnabledInGearMenu(int tag, const State &state);

/// Whether the context menu of an enabled table enables the command. Unlike in the gear menu, Delete looks at the
/// number of profiles alone. Deliberate: deleting refuses by itself where it must.
[[nodiscard]] bool isEnabledInContextMenu(int tag, const State &state);

} // namespace ProfileCommands
