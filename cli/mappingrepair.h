// SPDX-License-Identifier: MIT
// Repairs the keys after kestractl deleted a macro or a profile, since the daemon leaves that to its clients. No state;
// main thread.
#pragma once

#include "cli/daemonclient.h"
#include "keys/keymapping.h"

/// Sends the profiles repaired by KeyMappings::removeDeletedMacroProfileMappings(), or nothing when none changed. A
/// repaired key has no assignment.
/// Call it after the daemon deleted number `deletedIndex`; `documentBefore` is the document from before the deletion.
/// `assignment` is playMacro for a macro and switchProfile for a profile.
[[nodiscard]] CommandResult<void> repairMappings(DaemonClient &daemon, const QVariantMap &documentBefore,
                                                 int deletedIndex, KeyMappings::Assignment assignment);
