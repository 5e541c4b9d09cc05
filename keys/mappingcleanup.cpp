// SPDX-License-Identifier: MIT
#include "keys/mappingcleanup.h"

#include "base/plistnumbers.h"
#include "base/settingskeys.h"
#include "keys/keymapping.h"

namespace {

bool isDictionary(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}

// Deliberate: the path is looked up inside the default profile record itself, where it usually does not exist; the
// replacement is then an empty entry, which leaves the key without an assignment of its own.
QVariantMap replacementEntries(const QVariantMap &defaultDict)
{
    return defaultDict.value(SettingsKeys::profiles).toList().value(0).toMap().value(SettingsKeys::keys).toMap();
}

} // namespace

QVariantList KeyMappings::removeDeletedMacroProfileMappings(const QVariantList &profiles, qsizetype macroCount,
                                                            const QVariantMap &defaultDict, qint32 deletedIndex,
                                                            qint32 mappingType)
{
    quint32 count = 0;
    if (mappingType == static_cast<qint32>(Assignment::switchProfile))
        count = static_cast<quint32>(profiles.size());
    else if (mappingType == static_cast<qint32>(Assignment::playMacro))
        count = static_cast<quint32>(macroCount);

    const QVariantMap replacements = replacementEntries(defaultDict);
    // Deliberate: entries behind the deleted index keep it, nothing is renumbered. And the comparison is unsigned: a
    // negative index counts as past the end, and of an empty array nothing is past the end.
    const auto needsRepair = [&](const Entry &entry) {
        return entry.command == mappingType
               && (entry.param1 == deletedIndex || static_cast<quint32>(entry.param1) > count - 1u);
    };

    QVariantList repaired = profiles;
    // Deliberate: both outlive one turn of the loop, so that a record without "Keys" is given those of the record
    // before it. A first record without them stays without.
    QVariantMap keys;
    bool hasKeys = false;
    for (QVariant &element : repaired) {
        if (!isDictionary(element))
            continue;
        QVariantMap profile = element.toMap();
        if (const QVariant own = profile.value(SettingsKeys::keys); isDictionary(own)) {
            keys = own.toMap();
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
    return repaired;
}
