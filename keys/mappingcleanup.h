// SPDX-License-Identifier: MIT
// Repairs the "Keys" of all profiles after a macro or a profile was deleted. A rule without state, for any thread.
#pragma once

#include <QVariantList>
#include <QVariantMap>

namespace KeyMappings {

/// `profiles` (all profile records) with every entry of `mappingType` (10 macro, 17 profile) replaced whose index is
/// `deletedIndex` or past the end of its array; the array's length is the number of `profiles`, or `macroCount`.
/// The replacement is the same key's entry at "Profiles" -> 0 -> "Keys" in `defaultDict`, an empty entry without one.
[[nodiscard]] QVariantList removeDeletedMacroProfileMappings(const QVariantList &profiles, qsizetype macroCount,
                                                             const QVariantMap &defaultDict, qint32 deletedIndex,
                                                             qint32 mappingType);

} // namespace KeyMappings
