// SPDX-License-Identifier: MIT
// What a macro file holds: one macro record as a property list, without its "macroID". The window and kestractl export
// and import by these rules. Pure functions; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace MacroFile {

inline constexpr QLatin1StringView suffix{"KestraMacro"};

/// What a macro is called that nobody has named, before it is made unique.
inline constexpr QLatin1StringView untitledName{"Untitled Macro"};

/// What the file of the macro `record` holds: all of it but its identity, which is the daemon's.
[[nodiscard]] QVariantMap exportedRecord(QVariantMap record);

/// The record to add for a file that holds `record`, next to `macros` (array of macro records): its name made unique;
/// the untitled name where it has none, or one that is no text. Everything else is the daemon's to judge.
[[nodiscard]] QVariantMap importedRecord(QVariantMap record, const QVariantList &macros);

} // namespace MacroFile
