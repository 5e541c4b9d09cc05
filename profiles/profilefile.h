// SPDX-License-Identifier: MIT
// What a profile file holds: one whole profile record as a property list. The window and kestractl export and import by
// these rules. Pure functions; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace ProfileFile {

inline constexpr QLatin1StringView suffix{"KestraProfile"};

/// What a profile is called that nobody has named, before it is made unique, whatever the language of the interface.
inline constexpr QLatin1StringView untitledName{"Untitled Profile"};

/// The record to add for a file that holds `record`, next to `profiles` (array of profile records): its name made
/// unique; the untitled name where it has none, or one that is no text. Everything else is the daemon's to judge.
[[nodiscard]] QVariantMap importedRecord(QVariantMap record, const QVariantList &profiles);

} // namespace ProfileFile
