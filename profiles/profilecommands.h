// SPDX-License-Identifier: MIT
// The nine commands of the profiles tab, and when each can be chosen. The gear menu and the context menu share one
// table. No state; any thread.
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

/// Returns all nine, in the order of both menus.
[[nodiscard]] const QList<MenuCommand> &all();

/// True if the gear menu enables the command.
[[nodiscard]] bool isEnabledInGearMenu(int tag, const State &state);

/// True if the context menu of an enabled table enables the command. Unlike in the gear menu, Delete depends only on
/// the number of profiles. Deliberate: the deletion itself refuses where it must.
[[nodiscard]] bool isEnabledInContextMenu(int tag, const State &state);

} // namespace ProfileCommands
