// SPDX-License-Identifier: MIT
#include "daemon/settings/textnumbers.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "daemon/settings/requestreader.h"
#include "keys/keymapping.h"
#include "macros/macrorecord.h"

#include <array>
#include <cmath>
#include <span>

namespace {

using SettingsKeys::Key;

constexpr std::array profileFields{SettingsKeys::autoSwitchOn,   SettingsKeys::profileOsdOn,
                                   SettingsKeys::backlightLed,   SettingsKeys::ledKbEffects,
                                   SettingsKeys::gameLightingOn, SettingsKeys::brightnessKbNormal,
                                   SettingsKeys::scrollLed};
constexpr std::array colorFields{SettingsKeys::red, SettingsKeys::green, SettingsKeys::blue};
constexpr std::array entryFields{SettingsKeys::param1, SettingsKeys::param2};
constexpr std::array eventFields{SettingsKeys::command, SettingsKeys::delay, SettingsKeys::page,
                                 SettingsKeys::argument};

/// The number in a text that contains only a number; otherwise `value` unchanged.
QVariant numberIn(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return value;
    bool isNumber = false;
    if (const int number = value.toString().toInt(&isNumber); isNumber)
        return number;
    const double real = value.toString().toDouble(&isNumber);
    return isNumber && std::isfinite(real) ? QVariant(real) : value;
}

void readFields(QVariantMap &record, std::span<const Key> fields)
{
    for (const Key &field : fields) {
        const auto found = record.find(field);
        if (found != record.end())
            *found = numberIn(*found);
    }
}

/// `list` with the numbers in `fields` of each dictionary.
QVariantList readInEach(QVariantList list, std::span<const Key> fields)
{
    for (QVariant &value : list) {
        if (value.typeId() != QMetaType::QVariantMap)
            continue;
        QVariantMap record = value.toMap();
        readFields(record, fields);
        value = record;
    }
    return list;
}

QVariantMap readInEntry(QVariantMap entry)
{
    readFields(entry, std::array{SettingsKeys::command});
    // A program can be called "7".
    if (!KeyMappings::readEntry(entry).is(KeyMappings::Assignment::launchProgram))
        readFields(entry, entryFields);
    return entry;
}

} // namespace

QVariantMap TextNumbers::readInProfile(QVariantMap profile)
{
    readFields(profile, profileFields);
    if (const auto colors = RequestReader::array(profile, SettingsKeys::ledKbColors))
        profile.insert(SettingsKeys::ledKbColors, readInEach(*colors, colorFields));
    std::optional<QVariantMap> keys = ProfileRecord::ownKeys(profile);
    if (!keys)
        return profile;
    for (QVariant &entry : *keys) {
        if (entry.typeId() == QMetaType::QVariantMap)
            entry = readInEntry(entry.toMap());
    }
    profile.insert(SettingsKeys::keys, *keys);
    return profile;
}

QVariantMap TextNumbers::readInMacro(QVariantMap macro)
{
    readFields(macro, std::array{SettingsKeys::delay});
    const QVariantList events = MacroRecord::events(macro);
    return events.isEmpty() ? macro : MacroRecord::withEvents(macro, readInEach(events, eventFields));
}
