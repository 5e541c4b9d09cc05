// SPDX-License-Identifier: MIT
// The assignments of a profile's keys, decoded once from its "Keys" dictionary. Values; any thread.
#pragma once

#include "base/hidusage.h"

#include <QString>
#include <QVariantMap>

#include <array>

/// The action of one key. Each kind uses only its own fields.
struct KeyAssignment
{
    enum class Kind { defaultKey, sendKey, disabled, switchProfile, launchProgram, playMacro };

    Kind kind = Kind::defaultKey;
    quint16 key = 0;      ///< sendKey: usage on the Keyboard/Keypad page; 0 when only modifiers are sent
    quint8 modifiers = 0; ///< sendKey: modifier byte of the boot keyboard
    int index = 0;        ///< switchProfile: index in "Profiles"; playMacro: index in "Macros"
    int repeat = 1;       ///< playMacro: 1 to 10 times, or 255 until released, 254 until pressed again
    QString program = {}; ///< launchProgram: path

    bool operator==(const KeyAssignment &) const = default;
};

/// The assignment of `key` according to `entry`, a key mapping entry. A key without entry or command is a default key.
/// A default entry with the code of another key sends that key. A key with an unknown command does nothing.
[[nodiscard]] KeyAssignment assignmentOf(const QVariantMap &entry, quint16 key);

/// The assignments of one profile, as a table: a look-up allocates nothing.
class KeyMap
{
public:
    KeyMap() = default; ///< every key is a default key
    explicit KeyMap(const QVariantMap &profile);

    /// `key`: at most HidUsage::lastKey.
    [[nodiscard]] const KeyAssignment &assignment(quint16 key) const { return mAssignments[key]; }

private:
    std::array<KeyAssignment, HidUsage::lastKey + 1> mAssignments;
};
