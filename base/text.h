// SPDX-License-Identifier: MIT
// Every text a person reads is looked up here by its key ("lkey…") in the string tables.
#pragma once

#include <QString>
#include <QStringList>

/// Installs the string tables in `folder` (<language>.qm): English, and over it the first of `languages` (as
/// QLocale::uiLanguages() gives them) that has a table.
void installTexts(const QString &folder, const QStringList &languages);

/// The text of `key` in the loaded string table; "No Translation" when no table has it.
[[nodiscard]] QString localizedText(const char *key);

/// localizedText(key) used as a format: each "%@" is replaced, left to right, by one of `arguments`.
[[nodiscard]] QString localizedFormat(const char *key, const QStringList &arguments);

/// `format` with each "%@" replaced, left to right, by one of `arguments`; a "%@" without an argument stays.
[[nodiscard]] QString formatted(const QString &format, const QStringList &arguments);
