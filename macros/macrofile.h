// SPDX-License-Identifier: MIT
// The content of a macro file: one macro record as a property list, without its "macroID". The window and kestractl
// export and import by these rules. Pure functions; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace MacroFile {

inline constexpr QLatin1StringView suffix{"KestraMacro"};

/// The name of a macro that the user has not named, before it is made unique.
inline constexpr QLatin1StringView untitledName{"Untitled Macro"};

/// Returns the record of a new macro without events, with a name that no record in `macros` (array of macro records)
/// has.
[[nodiscard]] QVariantMap newRecord(const QVariantList &macros);

/// Returns the file content for the macro `record`: all of it except its identifier, which belongs to the daemon.
[[nodiscard]] QVariantMap exportedRecord(QVariantMap record);

/// True if `record` is that of a macro: it has a name of a macro, or a sequence. A record of a profile has neither.
[[nodiscard]] bool holdsMacro(const QVariantMap &record);

/// Returns the record to add to `macros` (array of macro records) for a file that holds `record`. Makes the name
/// unique; the untitled name replaces one that is absent or not text. The daemon judges everything else.
[[nodiscard]] QVariantMap importedRecord(QVariantMap record, const QVariantList &macros);

} // namespace MacroFile
