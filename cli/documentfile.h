// SPDX-License-Identifier: MIT
// A file with all settings: a binary or XML property list, or JSON. No state; any thread.
#pragma once

#include "cli/commandresult.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

namespace DocumentFile {

/// The bytes of the file: JSON if `path` ends in ".json", otherwise a binary property list. Absent if a value has no
/// property-list form.
[[nodiscard]] std::optional<QByteArray> contents(const QString &path, const QVariantMap &document);

/// The dictionary in `bytes`. The error is wrong usage; its message has the line and the fault of a text file that
/// cannot be read.
[[nodiscard]] CommandResult<QVariantMap> read(const QByteArray &bytes);

} // namespace DocumentFile
