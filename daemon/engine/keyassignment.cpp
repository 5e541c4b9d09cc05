// SPDX-License-Identifier: MIT
#include "daemon/engine/keyassignment.h"

#include "base/profilerecord.h"
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
    if (!fields.isMapped() && !fields.is(Assignment::defaultKey))
        return assignment;
    switch (static_cast<Assignment>(fields.command)) {
    case Assignment::playMacro:
        assignment.kind = Kind::playMacro;
        assignment.index = fields.param1;
        // The window shows an unknown repeat mode as the first mode, so it plays as the first mode.
        assignment.repeat = KeyMappings::macroRepeatValue(KeyMappings::macroRepeat(fields.param2));
        break;
    case Assignment::singleKey:
        assignment.kind = Kind::sendKey;
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
        if (isKey(fields.param1) && fields.param1 != key) {
            assignment.kind = Kind::sendKey;
            assignment.key = static_cast<quint16>(fields.param1);
        }
        break;
    default:
        assignment.kind = Kind::disabled; // the window shows it as mapped, so it must not act as a default key
        break;
    }
    return assignment;
}

KeyMap::KeyMap(const QVariantMap &profile)
{
    const QVariantMap keys = ProfileRecord::keys(profile);
    for (auto entry = keys.constBegin(); entry != keys.constEnd(); ++entry) {
        const int key = entry.key().toInt();
        // "04" and "+4" are numbers, but clients look keys up by "4": such an entry would act without being shown.
        if (isKey(key) && entry.key() == QString::number(key))
            mAssignments[static_cast<std::size_t>(key)] =
                assignmentOf(entry.value().toMap(), static_cast<quint16>(key));
    }
}
