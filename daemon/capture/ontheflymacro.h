// SPDX-License-Identifier: MIT
// Adds a macro recorded on the keyboard itself to the settings document. Pure functions; any thread.
#pragma once

#include "daemon/settings/documentcommands.h"

#include <QVariantList>

/// The most events that a new macro may have; 0 when the document has no room for more macros or events.
[[nodiscard]] int roomForNewMacro(const QVariantMap &document);

/// Appends a macro with `events` and a unique name, and makes `key` (a code of the key layout) of the active profile
/// play it once. Status::limitReached when there is no room.
[[nodiscard]] CommandOutcome addOnTheFlyMacro(const QVariantMap &document, const QVariantList &events, int key);
