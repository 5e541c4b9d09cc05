// SPDX-License-Identifier: MIT
// Repairs the "Keys" of all profiles after a macro or a profile was deleted. The window and kestractl both use this
// rule. It has no state; any thread may call it.
#pragma once

#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace KeyMappings {

/// Returns the profile records after the deletion of the row `deletedIndex`. Every entry of `mappingType` (10 macro, 17
/// profile) is replaced if its index is `deletedIndex` or past the end. Absent when no record changes: the caller then
/// sends nothing. The end is that of `macrosBeforeDeletion` for a macro and that of `profilesAfterDeletion` for a
/// profile. The replacement is the same key's entry at "Profiles" -> 0 -> "Keys" in `defaultDict`, a profile record. A
/// profile record usually has no "Profiles": the replacement is then an empty entry, and the key has no assignment.
/// Nothing is renumbered. A key for a later record keeps its index, and thereby gets another record.
[[nodiscard]] std::optional<QVariantList> removeDeletedMacroProfileMappings(const QVariantList &profilesAfterDeletion,
                                                                            const QVariantList &macrosBeforeDeletion,
                                                                            const QVariantMap &defaultDict,
                                                                            qint32 deletedIndex, qint32 mappingType);

} // namespace KeyMappings
