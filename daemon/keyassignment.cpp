// SPDX-License-Identifier: MIT
#include "daemon/keyassignment.h"

#include "app/util/settingskeys.h"
#include "macros/macrorecord.h"

namespace {

// "command" of a key mapping entry
constexpr int playMacroCommand = 10;
constexpr int singleKeyCommand = 16;
constexpr int switchProfileCommand = 17;
constexpr int disabledCommand = 20;
constexpr int defaultCommand = 45;
constexpr int launchProgramCommand = 46;

bool isKey(int usage)
{
    return usage >= HidUsage::firstKey && usage <= HidUsage::lastKey;
}

} // namespace

KeyAssignment assignmentOf(const QVariantMap &entry, quint16 key)
{
    using Kind = KeyAssignment::Kind;
    const int param1 = MacroRecord::integerValue(entry.value(SettingsKeys::param1));
    const int param2 = MacroRecord::integerValue(entry.value(SettingsKeys::param2));
    KeyAssignment assignment;
    assignment.key = key;
    switch (MacroRecord::integerValue(entry.value(SettingsKeys::command))) {
    case playMacroCommand:
        assignment.kind = Kind::playMacro;
        assignment.index = param1;
        assignment.repeat = param2;
        break;
    case singleKeyCommand:
        assignment.key = isKey(param1) ? static_cast<quint16>(param1) : 0;
        assignment.modifiers = static_cast<quint8>(param2);
        break;
    case switchProfileCommand:
        assignment.kind = Kind::switchProfile;
        assignment.index = param1;
        break;
    case disabledCommand:
        assignment.kind = Kind::disabled;
        break;
    case launchProgramCommand:
        assignment.kind = Kind::launchProgram;
        assignment.program = entry.value(SettingsKeys::param1).toString();
        break;
    case defaultCommand:
        if (isKey(param1))
            assignment.key = static_cast<quint16>(param1);
        break;
    default:
        break;
    }
    return assignment;
}

KeyMap::KeyMap(const QVariantMap &profile)
{
    const QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
    for (auto entry = keys.constBegin(); entry != keys.constEnd(); ++entry) {
        bool isNumber = false;
        const int key = entry.key().toInt(&isNumber);
        if (isNumber && isKey(key))
            mAssignments.insert(static_cast<quint16>(key), assignmentOf(entry.value().toMap(), static_cast<quint16>(key)));
    }
}

KeyAssignment KeyMap::assignment(quint16 key) const
{
    const auto found = mAssignments.constFind(key);
    return found == mAssignments.constEnd() ? assignmentOf({}, key) : *found;
}
