// SPDX-License-Identifier: MIT
// What is done with a file of the state folder that is not what it should be: it is kept under another name, and never
// overwritten. No state; any thread.
#pragma once

#include <QString>

struct SetAsideFile
{
    QString name;  ///< the file's new path
    QString error; ///< in the system's words; empty when it was renamed
};

/// A path that nothing has yet: "<base>.<mark>-<UTC time>", with a number where that is taken. `base` is the path
/// without what marks it as a copy.
[[nodiscard]] QString unusedAsideName(const QString &base, QLatin1StringView mark);

/// Renames the file at `path` to the unusedAsideName() with the mark "damaged".
[[nodiscard]] SetAsideFile setDamagedFileAside(const QString &path, const QString &base);
