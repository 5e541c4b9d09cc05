// SPDX-License-Identifier: MIT
// The largest settings document that a user can have, for benchmarks and for tests that need a large document. No
// state; any thread.
#pragma once

#include <QVariantMap>

/// A settings document of 20 profiles with an entry for each of the 119 keys, and 20 macros of 50 events. Always the
/// same. Macro records hold their events in an array under "sequence"/"Events".
[[nodiscard]] QVariantMap fullDocument();

/// A profile record named `name`. Most keys have the entry of a default key, a few have another assignment.
[[nodiscard]] QVariantMap fullProfile(const QString &name);

/// A macro record named `name` with `eventCount` events, which press and release keys in turn. Keys and delays differ
/// from macro to macro.
[[nodiscard]] QVariantMap fullMacro(const QString &name, int macroId, int eventCount);
