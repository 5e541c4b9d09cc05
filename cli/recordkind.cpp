// SPDX-License-Identifier: MIT
#include "cli/recordkind.h"

#include "base/settingskeys.h"
#include "macros/macrofile.h"
#include "profiles/profilefile.h"

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;
using KeyMappings::Assignment;

const RecordKind profileKind{.word = "profile"_L1,
                             .records = &Document::profiles,
                             .nameKey = SettingsKeys::profileName,
                             .contentKey = SettingsKeys::keys,
                             .listCommand = "kestractl profile list"_L1,
                             .fileSuffix = ProfileFile::suffix,
                             .deletion = Command::deleteProfile,
                             .indexKey = DaemonProtocol::profileId,
                             .assignment = Assignment::switchProfile};
const RecordKind macroKind{.word = "macro"_L1,
                           .records = &Document::macros,
                           .nameKey = SettingsKeys::macroName,
                           .contentKey = SettingsKeys::sequence,
                           .listCommand = "kestractl macro list"_L1,
                           .fileSuffix = MacroFile::suffix,
                           .deletion = Command::deleteMacro,
                           .indexKey = DaemonProtocol::macroId,
                           .assignment = Assignment::playMacro};

bool isOfKind(const QVariantMap &record, const RecordKind &kind)
{
    return record.contains(kind.nameKey) || record.contains(kind.contentKey);
}
