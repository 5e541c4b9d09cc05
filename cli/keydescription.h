// SPDX-License-Identifier: MIT
// What a key does, in the words of kestractl. No state; any thread.
#pragma once

#include <QJsonObject>
#include <QString>
#include <QVariantMap>

/// "disabled", "default key", "macro Combo, until released", … for the key `code` in the active profile.
[[nodiscard]] QString describeKey(const QVariantMap &document, int code);

/// "M1 in Game, F5 in Default Profile": the keys that play the macro with the index; empty if no key does.
[[nodiscard]] QString describeMacroUses(const QVariantMap &document, int macroIndex);

/// {"key", "code", "mapped", "description", "entry"}; "entry" is the mapping entry as stored, null without one.
[[nodiscard]] QJsonObject keyAsJson(const QVariantMap &document, int code);
