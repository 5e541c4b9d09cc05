// SPDX-License-Identifier: MIT
// The key mapping entry: the effect of one key, stored under its key-code text in the "Keys" dictionary of a profile
// record. Rules without state; any thread may call them. Dictionaries are taken by value and returned changed.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <optional>
#include <span>

namespace KeyMappings {

/// The assignments ("command" values) that the program knows.
enum class Assignment : qint32 {
    playMacro = 10,     ///< param1 index into "Macros", param2 repeat value
    singleKey = 16,     ///< param1 HID usage ID, param2 modifier byte
    switchProfile = 17, ///< param1 index into "Profiles", param2 0
    disabled = 20,      ///< param1 and param2 0
    defaultKey = 45,    ///< param1 that of the default profile's entry, param2 0
    launchProgram = 46, ///< param1 path of the application bundle (a string), param2 ""
};

/// One entry as read from a dictionary.
struct Entry
{
    qint32 command = 0; ///< 0 when the entry or its "command" is absent
    qint32 param1 = 0;  ///< 0 when absent or not a number
    qint32 param2 = 0;
    QString programPath; ///< "param1" when it is a string, else empty

    [[nodiscard]] bool is(Assignment assignment) const { return command == static_cast<qint32>(assignment); }
    [[nodiscard]] bool isMapped() const;
    /// True for a mapped key whose "command" the program does not know. Such a key does nothing.
    [[nodiscard]] bool isUnknown() const;
};

/// Reads an entry; a value that is not a dictionary reads as an absent entry.
[[nodiscard]] Entry readEntry(const QVariant &value);

/// Returns the entry of the key `code` in the "Keys" of the profile record `profile`.
[[nodiscard]] Entry entryForKey(const QVariantMap &profile, int code);

/// Returns the name, under `nameKey`, of the macro or profile that an entry's "param1" means: the one at `index` in
/// `records`. Absent if there is no such record.
[[nodiscard]] std::optional<QString> recordName(const QVariantList &records, qint32 index, QLatin1StringView nameKey);

/// True if a key with this "command" is shown as mapped: greater than 0 and not the default key. A key with a value
/// that the program does not know is also mapped.
[[nodiscard]] bool isKeyMapped(qint32 command);

/// Returns the position of a "command" in the assignment pop-up, 0 to 5; 0 for values without a position.
[[nodiscard]] int checkPopUpAssignmentIndexForValue(qint32 command);

/// Positions of the assignment pop-up.
enum AssignmentPosition : int {
    defaultKeyPosition = 0,
    singleKeyPosition = 1,
    macroPosition = 2,
    profilePosition = 3,
    launchProgramPosition = 4,
    disablePosition = 5,
};

/// How often a macro plays. The rows are in the order of the playback pop-up.
struct RepeatMode
{
    qint32 value;         ///< stored as "param2"
    const char *labelKey; ///< key of its text
};

inline constexpr qint32 playOnceValue = 1;
inline constexpr qint32 repeatUntilPressedAgainValue = 254;
inline constexpr qint32 repeatUntilReleasedValue = 255;

[[nodiscard]] std::span<const RepeatMode> repeatModes();

/// Returns the position of a stored repeat value in the playback pop-up. Values that are not a repeat mode have
/// position 0, play once.
[[nodiscard]] int macroRepeat(qint32 value);

/// Returns the value to store for a position of the playback pop-up; 1 for positions outside 1 to 11.
[[nodiscard]] qint32 macroRepeatValue(int position);

/// Returns `keys` (a "Keys" dictionary) with the three values set in the entry under `codeText`. Other values of that
/// entry stay, and so do the other entries.
[[nodiscard]] QVariantMap withEntry(QVariantMap keys, const QString &codeText, Assignment assignment,
                                    const QVariant &param1, const QVariant &param2);

} // namespace KeyMappings
