// SPDX-License-Identifier: MIT
// A stable name for each selectable key, for the command line and for assistive technology. Any thread.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Returns "A", "F1", "Left Shift", "M1", "T7", "Numpad 7"; empty for a code outside the layout.
[[nodiscard]] QString keyName(int code);

/// Returns keyName() and, if it has one, its legend or short name, such as ";" or "Esc"; empty for a code outside the
/// layout.
[[nodiscard]] QStringList usualKeyNames(int code);

/// Returns every text by which keyCodeForName() finds the key with `code`, keyName() first, but for its code and for
/// other letter cases; empty for a code outside the layout.
[[nodiscard]] QStringList keyNames(int code);

/// Returns the code of the key that `text` names. `text` is the key's name, its legend (";") or its button's name
/// without the "m" ("NumPadSeven"), in any letter case. Otherwise it is a code in decimal or as 0x hexadecimal. Names
/// take precedence: "4" is the digit key; the key with code 4 is "A" or "0x04". Absent if the layout has no such key.
[[nodiscard]] std::optional<int> keyCodeForName(const QString &text);
