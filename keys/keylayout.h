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

/// Returns the 119 selectable keys, in the order of their actions.
[[nodiscard]] std::span<const KeyRow> selectableKeys();

/// Returns Eject, Macro, FN, Menu and the keypad blank.
[[nodiscard]] std::span<const FixedKeyRow> fixedKeys();

/// Returns the row of the key with `code`; null if the layout has none.
[[nodiscard]] const KeyRow *rowForCode(int code);

/// Returns the code as a dictionary key: decimal, without padding.
[[nodiscard]] QString codeText(int code);

/// Returns the integer value of a code text: the decimal number at its start, or 0 if there is none.
[[nodiscard]] int codeValue(const QString &codeText);

} // namespace KeyLayout
