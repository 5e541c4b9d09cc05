// SPDX-License-Identifier: MIT
// Makes files private, because they can contain what the user typed. No state; any thread.
#pragma once

#include "base/result.h"

#include <QString>
#include <QStringList>

/// Sets the mode of the regular file at `path` to 0600. The file must belong to this user; links are not followed.
/// The error is the system's reason.
[[nodiscard]] Result<void> makeFilePrivate(const QString &path);

/// Sets the mode of the folder at `path` to 0700, and that of its regular files to 0600. Skips links; cannot change
/// files of other users. Returns one line for each path that could not be made private.
[[nodiscard]] QStringList makeFolderPrivate(const QString &path);
