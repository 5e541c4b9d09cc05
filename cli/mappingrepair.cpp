// SPDX-License-Identifier: MIT
#include "cli/mappingrepair.h"

#include "base/settingskeys.h"
#include "cli/factoryprofile.h"
#include "keys/mappingcleanup.h"

DaemonClient::Answer repairMappings(DaemonClient &daemon, const QVariantMap &documentBefore, int deletedIndex,
                                    KeyMappings::Assignment assignment)
{
    DaemonClient::Answer documentAfter = daemon.document();
    if (!documentAfter.ok())
        return documentAfter;
    const std::optional<QVariantList> repaired = KeyMappings::removeDeletedMacroProfileMappings(
        documentAfter.reply.value(SettingsKeys::profiles).toList(), documentBefore.value(SettingsKeys::macros).toList(),
        factoryProfile().value_or(QVariantMap()), deletedIndex, static_cast<qint32>(assignment));
    if (!repaired)
        return {};
    return daemon.sendChecked(DaemonProtocol::Command::replaceAllProfiles, {{DaemonProtocol::allProfiles, *repaired}});
}
