// SPDX-License-Identifier: MIT
#include "keys/keymapping.h"

#include "base/plistnumbers.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"

#include <algorithm>
#include <iterator>

namespace {

using KeyMappings::Assignment;

struct PositionRow
{
    Assignment assignment;
    int position;
};

constexpr PositionRow positionRows[] = {
    {Assignment::playMacro, KeyMappings::macroPosition},
    {Assignment::singleKey, KeyMappings::singleKeyPosition},
    {Assignment::switchProfile, KeyMappings::profilePosition},
    {Assignment::disabled, KeyMappings::disablePosition},
    {Assignment::launchProgram, KeyMappings::launchProgramPosition},
};

// Counts are stored unchanged; the two open-ended modes have the highest byte values.
constexpr KeyMappings::RepeatMode repeatModeRows[] = {
    {KeyMappings::playOnceValue, "lkeyPlayMacroOnce"},
    {KeyMappings::repeatUntilReleasedValue, "lkeyRepeatUntilReleased"},
    {KeyMappings::repeatUntilPressedAgainValue, "lkeyRepeatUntilPressedAgain"},
    {2, "lkeyRepeat2Times"},
    {3, "lkeyRepeat3Times"},
    {4, "lkeyRepeat4Times"},
    {5, "lkeyRepeat5Times"},
    {6, "lkeyRepeat6Times"},
    {7, "lkeyRepeat7Times"},
    {8, "lkeyRepeat8Times"},
    {9, "lkeyRepeat9Times"},
    {10, "lkeyRepeat10Times"},
};

} // namespace

bool KeyMappings::isKeyMapped(qint32 command)
{
    return command > 0 && command != static_cast<qint32>(Assignment::defaultKey);
}

bool KeyMappings::Entry::isMapped() const
{
    return isKeyMapped(command);
}

bool KeyMappings::Entry::isUnknown() const
{
    return isMapped() && checkPopUpAssignmentIndexForValue(command) == defaultKeyPosition;
}

std::optional<QString> KeyMappings::recordName(const QVariantList &records, qint32 index, QLatin1StringView nameKey)
{
    const QVariant record = records.value(index);
    if (record.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return record.toMap().value(nameKey).toString();
}

KeyMappings::Entry KeyMappings::readEntry(const QVariant &value)
{
    const QVariantMap dictionary = value.toMap();
    const QVariant param1 = dictionary.value(SettingsKeys::param1);
    return {.command = PlistNumbers::integerValue(dictionary.value(SettingsKeys::command)),
            .param1 = PlistNumbers::integerValue(param1),
            .param2 = PlistNumbers::integerValue(dictionary.value(SettingsKeys::param2)),
            .programPath = param1.typeId() == QMetaType::QString ? param1.toString() : QString()};
}

KeyMappings::Entry KeyMappings::entryForKey(const QVariantMap &profile, int code)
{
    return readEntry(ProfileRecord::keys(profile).value(QString::number(code)));
}

int KeyMappings::checkPopUpAssignmentIndexForValue(qint32 command)
{
    const auto row = std::ranges::find(positionRows, static_cast<Assignment>(command), &PositionRow::assignment);
    return row == std::end(positionRows) ? defaultKeyPosition : row->position;
}

std::span<const KeyMappings::RepeatMode> KeyMappings::repeatModes()
{
    return repeatModeRows;
}

int KeyMappings::macroRepeat(qint32 value)
{
    const auto row = std::ranges::find(repeatModeRows, value, &RepeatMode::value);
    return row == std::end(repeatModeRows) ? 0 : static_cast<int>(row - std::begin(repeatModeRows));
}

qint32 KeyMappings::macroRepeatValue(int position)
{
    const bool isInside = position >= 0 && position < static_cast<int>(std::size(repeatModeRows));
    return isInside ? repeatModeRows[position].value : playOnceValue;
}

QVariantMap KeyMappings::withEntry(QVariantMap keys, const QString &codeText, Assignment assignment,
                                   const QVariant &param1, const QVariant &param2)
{
    QVariantMap entry = keys.value(codeText).toMap();
    entry.insert(SettingsKeys::command, static_cast<qint32>(assignment));
    entry.insert(SettingsKeys::param1, param1);
    entry.insert(SettingsKeys::param2, param2);
    keys.insert(codeText, entry);
    return keys;
}
