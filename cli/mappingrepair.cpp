// SPDX-License-Identifier: MIT
#include "cli/mappingrepair.h"

#include "base/document.h"
#include "keys/mappingcleanup.h"

using namespace Qt::StringLiterals;

CommandResult<void> repairMappings(DaemonClient &daemon, const QVariantMap &documentBefore, int deletedIndex,
                                   KeyMappings::Assignment assignment)
{
    const CommandResult<QVariantMap> documentAfter = daemon.document();
    if (!documentAfter)
        return documentAfter.error();
    // Without default entries: the factory profile has none where the rule looks for them.
    const std::optional<QVariantList> repaired = KeyMappings::removeDeletedMacroProfileMappings(
        Document(*documentAfter).profiles(), Document(documentBefore).macros(), QVariantMap(), deletedIndex,
        static_cast<qint32>(assignment));
    if (!repaired)
        return {};
    return daemon
        .sendChecked(DaemonProtocol::Command::replaceAllProfiles, {{DaemonProtocol::allProfiles, *repaired}},
                     u"the profiles cannot be changed"_s)
        .withoutValue();
}
