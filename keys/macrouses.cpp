// SPDX-License-Identifier: MIT
#include "keys/macrouses.h"

#include "base/profilerecord.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"

QList<KeyMappings::MacroUse> KeyMappings::macroUses(const QVariantList &profiles, int macroIndex)
{
    QList<MacroUse> uses;
    for (int profileIndex = 0; profileIndex < profiles.size(); ++profileIndex) {
        const QVariantMap profile = profiles.at(profileIndex).toMap();
        for (const KeyRow &key : KeyLayout::selectableKeys()) {
            const Entry entry = entryForKey(profile, key.code);
            if (entry.is(Assignment::playMacro) && entry.param1 == macroIndex)
                uses.append({profileIndex, ProfileRecord::name(profile), key.code});
        }
    }
    return uses;
}
