// SPDX-License-Identifier: MIT
// The keys of the keyboard as rows of data, made from keytable.inc. Constant; any thread may read it.
#pragma once

#include <QLatin1StringView>
#include <QString>

#include <span>

/// A key that can be selected and given an assignment.
struct KeyRow
{
    QLatin1StringView outlet;          ///< name of its button field, "mA"
    QLatin1StringView action;          ///< name of the operation that selects it, "clickA"
    int code;                          ///< USB HID usage ID, Keyboard/Keypad page
    QLatin1StringView functionKeyName; ///< "F1" to "F14"; empty for every other key

    [[nodiscard]] constexpr bool isFunctionKey() const { return !functionKeyName.isEmpty(); }
};

/// A key of the picture that can never be selected and has no code.
struct FixedKeyRow
{
    QLatin1StringView outlet;
    QLatin1StringView action;
    bool disabledAtStart;
};

namespace KeyLayout {

/// The 119 selectable keys, in the order of their actions.
[[nodiscard]] std::span<const KeyRow> selectableKeys();

/// Eject, Macro, FN, Menu and the keypad blank.
[[nodiscard]] std::span<const FixedKeyRow> fixedKeys();

/// The row of the key with `code`; null when the layout has none.
[[nodiscard]] const KeyRow *rowForCode(int code);

/// The code as a dictionary key: decimal, no padding.
[[nodiscard]] QString codeText(int code);

/// The integer value of a code text: a leading decimal number, 0 when there is none.
[[nodiscard]] int codeValue(const QString &codeText);

} // namespace KeyLayout
