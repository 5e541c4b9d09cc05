// SPDX-License-Identifier: MIT
// Files that other users must not read: what is typed can be in them. No state; any thread.
#pragma once

#include <QString>
#include <QStringList>

/// Gives the regular file at `path` the mode 0600. It must be this user's; a link is not followed. The system's reason
/// for a failure, empty for none.
[[nodiscard]] QString makeFilePrivate(const QString &path);

/// Gives the folder at `path` the mode 0700, and the regular files in it 0600, where they are this user's and not
/// links. A line for each that could not be made private.
[[nodiscard]] QStringList makeFolderPrivate(const QString &path);
