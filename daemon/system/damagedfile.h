// SPDX-License-Identifier: MIT
// Sets a damaged file of the state folder aside: the daemon keeps it under another name and never overwrites it. No
// state; any thread.
#pragma once

#include "base/result.h"

#include <QString>

/// A path that does not exist yet: "<base>.<mark>-<UTC time>", with a number appended if that name is taken. `base` is
/// the path without the part that marks a copy.
[[nodiscard]] QString unusedAsideName(const QString &base, QLatin1StringView mark);

/// Renames the file at `path` to an unusedAsideName() with the mark "damaged", and returns its new path. The error is
/// the system's reason.
[[nodiscard]] Result<QString> setDamagedFileAside(const QString &path, const QString &base);
