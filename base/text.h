// SPDX-License-Identifier: MIT
// Looks up every text that the user reads by its key ("lkey…") in the string tables.
#pragma once

#include <QString>
#include <QStringList>

/// Installs the string tables in `folder` (<language>.qm): English, and over it the first of `languages` (as returned
/// by QLocale::uiLanguages()) that has a table.
void installTexts(const QString &folder, const QStringList &languages);

/// Returns the text of `key` in the loaded string table; "No Translation" when no table has it.
[[nodiscard]] QString localizedText(const char *key);

/// Returns localizedText(key) with each "%@" replaced, left to right, by one of `arguments`.
[[nodiscard]] QString localizedFormat(const char *key, const QStringList &arguments);

/// Returns `format` with each "%@" replaced, left to right, by one of `arguments`; a "%@" without an argument stays.
[[nodiscard]] QString formatted(const QString &format, const QStringList &arguments);
