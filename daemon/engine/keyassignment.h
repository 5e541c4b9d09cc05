// SPDX-License-Identifier: MIT
// What the keys of the active profile do, decoded once from its "Keys" dictionary. Values; any thread.
#pragma once

#include "daemon/engine/hidusage.h"

#include <QString>
#include <QVariantMap>

#include <array>

/// What one key does. Only the fields of its kind are used.
struct KeyAssignment
{
    enum class Kind { sendKey, disabled, switchProfile, launchProgram, playMacro };

    Kind kind = Kind::sendKey;
    quint16 key = 0;      ///< sendKey: usage on the Keyboard/Keypad page; 0 when only modifiers are sent
    quint8 modifiers = 0; ///< sendKey: modifier byte of the boot keyboard
    int index = 0;        ///< switchProfile: position in "Profiles"; playMacro: position in "Macros"
    int repeat = 1;       ///< playMacro: 1 to 10 times, or 255 until released, 254 until pressed again
    QString program = {}; ///< launchProgram: path

    bool operator==(const KeyAssignment &) const = default;
};

/// The assignment that `entry` (a key mapping entry) gives to `key`. A default key sends the code that its entry names,
/// and without one its own; a key without entry or command sends its own. An unknown command makes the key do nothing.
[[nodiscard]] KeyAssignment assignmentOf(const QVariantMap &entry, quint16 key);

/// The assignments of one profile, as a table: looking one up allocates nothing.
class KeyMap
{
public:
    KeyMap(); ///< every key as the keyboard has it
    explicit KeyMap(const QVariantMap &profile);

    /// `key`: at most HidUsage::lastKey.
    [[nodiscard]] const KeyAssignment &assignment(quint16 key) const { return mAssignments[key]; }

private:
    std::array<KeyAssignment, HidUsage::lastKey + 1> mAssignments;
};
