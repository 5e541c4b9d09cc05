// SPDX-License-Identifier: MIT
#include "keys/mappingcleanup.h"

#include "base/document.h"
#include "base/plistnumbers.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "keys/keymapping.h"

namespace {

// Deliberate: the path is looked up inside the default profile record itself, where it usually does not exist. The
// replacement is then an empty entry, and the key has no assignment of its own.
QVariantMap replacementEntries(const QVariantMap &defaultDict)
{
    return ProfileRecord::keys(Document(defaultDict).profile(0));
}

// Deliberate: the count includes the deleted macro but not the deleted profile. A key that played the last macro
// therefore keeps its index.
quint32 countOf(qint32 mappingType, const QVariantList &profilesAfterDeletion, const QVariantList &macrosBeforeDeletion)
{
    if (mappingType == static_cast<qint32>(KeyMappings::Assignment::switchProfile))
        return static_cast<quint32>(profilesAfterDeletion.size());
    return static_cast<quint32>(macrosBeforeDeletion.size());
}

/// Entries of every other assignment refer to neither a macro nor a profile.
bool isRepairable(qint32 mappingType)
{
    return mappingType == static_cast<qint32>(KeyMappings::Assignment::switchProfile)
           || mappingType == static_cast<qint32>(KeyMappings::Assignment::playMacro);
}

} // namespace

std::optional<QVariantList> KeyMappings::removeDeletedMacroProfileMappings(const QVariantList &profilesAfterDeletion,
                                                                           const QVariantList &macrosBeforeDeletion,
                                                                           const QVariantMap &defaultDict,
                                                                           qint32 deletedIndex, qint32 mappingType)
{
    if (!isRepairable(mappingType))
        return {};
    const quint32 count = countOf(mappingType, profilesAfterDeletion, macrosBeforeDeletion);
    const QVariantMap replacements = replacementEntries(defaultDict);
    // Deliberate: entries after the deleted index keep it; nothing is renumbered. The comparison is unsigned: a
    // negative index is past the end, and no index is past the end of an empty array.
    const auto needsRepair = [&](const Entry &entry) {
        return entry.command == mappingType
               && (entry.param1 == deletedIndex || static_cast<quint32>(entry.param1) > count - 1u);
    };

    QVariantList repaired = profilesAfterDeletion;
    // Deliberate: both outlive one turn of the loop. A record without "Keys" therefore gets those of the record before
    // it; a first record without them stays without.
    QVariantMap keys;
    bool hasKeys = false;
    for (QVariant &element : repaired) {
        if (element.typeId() != QMetaType::QVariantMap)
            continue;
        QVariantMap profile = element.toMap();
        if (const std::optional<QVariantMap> own = ProfileRecord::ownKeys(profile)) {
            keys = *own;
            hasKeys = true;
        }
        if (!hasKeys)
            continue;
        const QStringList codeTexts = keys.keys();
        for (const QString &text : codeTexts) {
            const QString codeText = QString::number(PlistNumbers::integerValue(text));
            if (needsRepair(readEntry(keys.value(codeText))))
                keys.insert(codeText, replacements.value(codeText).toMap());
        }
        profile.insert(SettingsKeys::keys, keys);
        element = profile;
    }
    return repaired == profilesAfterDeletion ? std::nullopt : std::optional(repaired);
}
