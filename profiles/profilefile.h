// SPDX-License-Identifier: MIT
// The content of a profile file: one whole profile record as a property list. The window and kestractl export and
// import by these rules. Pure functions; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace ProfileFile {

inline constexpr QLatin1StringView suffix{"KestraProfile"};

/// The name of a profile that the user has not named, before it is made unique; the same in every language of the
/// interface.
inline constexpr QLatin1StringView untitledName{"Untitled Profile"};

/// True if `record` is that of a profile: it has a name of a profile, or keys. A record of a macro has neither.
[[nodiscard]] bool holdsProfile(const QVariantMap &record);

/// Returns the record to add to `profiles` (array of profile records) for a file that holds `record`. Makes the name
/// unique; the untitled name replaces one that is absent or not text. The daemon judges everything else.
[[nodiscard]] QVariantMap importedRecord(QVariantMap record, const QVariantList &profiles);

} // namespace ProfileFile
