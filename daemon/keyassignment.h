// SPDX-License-Identifier: MIT
// What the keys of the active profile do, decoded once from its "Keys" dictionary. Values; any thread.
#pragma once

#include "daemon/hidusage.h"

#include <QHash>
#include <QString>
#include <QVariantMap>

/// What one key does. Only the fields of its kind are used.
struct KeyAssignment
{
    enum class Kind { sendKey, disabled, switchProfile, launchProgram, playMacro };

    Kind kind = Kind::sendKey;
    quint16 key = 0;      ///< sendKey: usage on the Keyboard/Keypad page; below 4 when only modifiers are sent
    quint8 modifiers = 0; ///< sendKey: modifier byte of the boot keyboard
    int index = 0;        ///< switchProfile: position in "Profiles"; playMacro: position in "Macros"
    int repeat = 1;       ///< playMacro: times, or 255 until released, 254 until pressed again
    QString program;      ///< launchProgram: path

    bool operator==(const KeyAssignment &) const = default;
};

/// The assignment that `entry` (a key mapping entry) gives to `key`. An absent or unknown one is the default: the code
/// that the entry names, or the key's own.
[[nodiscard]] KeyAssignment assignmentOf(const QVariantMap &entry, quint16 key);

/// The assignments of one profile.
class KeyMap
{
public:
    KeyMap() = default;
    explicit KeyMap(const QVariantMap &profile);

    [[nodiscard]] KeyAssignment assignment(quint16 key) const;

private:
    QHash<quint16, KeyAssignment> mAssignments;
};
