// SPDX-License-Identifier: MIT
// The permissions of files, as the system stores them. No state; any thread.
#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>

[[nodiscard]] inline bool setMode(const QString &path, mode_t mode)
{
    return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

/// The mode of the file itself, even of a link; -1 when it does not exist.
[[nodiscard]] inline int modeOf(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}
