// SPDX-License-Identifier: MIT
// The permissions of files, as the system has them. No state; any thread.
#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>

[[nodiscard]] inline bool setMode(const QString &path, mode_t mode)
{
    return ::chmod(QFile::encodeName(path).constData(), mode) == 0;
}

/// Of the file itself, not of a link's target; -1 where there is none.
[[nodiscard]] inline int modeOf(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}
