// SPDX-License-Identifier: MIT
// Repairs the "Keys" of all profiles after a macro or a profile was deleted. The window and kestractl both use this one
// rule. It keeps no state; any thread may call it.
#pragma once

#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace KeyMappings {

/// The profile records after the deletion of number `deletedIndex`, with every entry of `mappingType` (10 macro, 17
/// profile) replaced whose index is `deletedIndex` or past the end. Absent when no record changes: send nothing then.
/// The end is that of `macrosBeforeDeletion` for a macro and that of `profilesAfterDeletion` for a profile.
/// The replacement is the same key's entry at "Profiles" -> 0 -> "Keys" in `defaultDict`, an empty entry without one.
[[nodiscard]] std::optional<QVariantList> removeDeletedMacroProfileMappings(const QVariantList &profilesAfterDeletion,
                                                                            const QVariantList &macrosBeforeDeletion,
                                                                            const QVariantMap &defaultDict,
                                                                            qint32 deletedIndex, qint32 mappingType);

} // namespace KeyMappings
