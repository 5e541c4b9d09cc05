// SPDX-License-Identifier: MIT
#include "daemon/engine/keyassignment.h"

#include "base/settingskeys.h"
#include "keys/keymapping.h"

using KeyMappings::Assignment;

namespace {

bool isKey(int usage)
{
    return usage >= HidUsage::firstKey && usage <= HidUsage::lastKey;
}

} // namespace

KeyAssignment assignmentOf(const QVariantMap &entry, quint16 key)
{
    using Kind = KeyAssignment::Kind;
    const KeyMappings::Entry fields = KeyMappings::readEntry(entry);
    KeyAssignment assignment;
    assignment.key = key;
    if (!fields.isMapped() && !fields.is(Assignment::defaultKey))
        return assignment;
    switch (static_cast<Assignment>(fields.command)) {
    case Assignment::playMacro:
        assignment.kind = Kind::playMacro;
        assignment.index = fields.param1;
        // A value that is no repeat mode shows as the first of them, and is played as it shows.
        assignment.repeat = KeyMappings::macroRepeatValue(KeyMappings::macroRepeat(fields.param2));
        break;
    case Assignment::singleKey:
        assignment.key = isKey(fields.param1) ? static_cast<quint16>(fields.param1) : 0;
        assignment.modifiers = static_cast<quint8>(fields.param2);
        break;
    case Assignment::switchProfile:
        assignment.kind = Kind::switchProfile;
        assignment.index = fields.param1;
        break;
    case Assignment::disabled: assignment.kind = Kind::disabled; break;
    case Assignment::launchProgram:
        assignment.kind = Kind::launchProgram;
        assignment.program = fields.programPath;
        break;
    case Assignment::defaultKey:
        if (isKey(fields.param1))
            assignment.key = static_cast<quint16>(fields.param1);
        break;
    default:
        assignment.kind = Kind::disabled; // it shows as mapped, so it is not the default; nothing else is known of it
        break;
    }
    return assignment;
}

KeyMap::KeyMap()
{
    for (quint16 key = 0; key < mAssignments.size(); ++key)
        mAssignments[key].key = key;
}

KeyMap::KeyMap(const QVariantMap &profile) : KeyMap()
{
    const QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
    for (auto entry = keys.constBegin(); entry != keys.constEnd(); ++entry) {
        const int key = entry.key().toInt();
        // "04" or "+4" is a number, but not the text under which a client finds the key: it would act and not be shown.
        if (isKey(key) && entry.key() == QString::number(key))
            mAssignments[static_cast<std::size_t>(key)] =
                assignmentOf(entry.value().toMap(), static_cast<quint16>(key));
    }
}
