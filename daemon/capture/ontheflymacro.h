// SPDX-License-Identifier: MIT
// What a macro recorded on the keyboard itself does to the settings document. Pure functions; any thread.
#pragma once

#include "daemon/settings/documentcommands.h"

#include <QVariantList>

/// How many events a new macro may have; 0 when the document has room for no more macros or events.
[[nodiscard]] int roomForNewMacro(const QVariantMap &document);

/// Appends a macro with `events`, under a name of its own, and makes `key` (a code of the key layout) of the active
/// profile play it once. Status::limitReached when there is no room.
[[nodiscard]] CommandOutcome addOnTheFlyMacro(const QVariantMap &document, const QVariantList &events, int key);
