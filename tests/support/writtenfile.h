// SPDX-License-Identifier: MIT
// Writes the files that a test reads: any bytes, or a desktop entry. No state; any thread.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

/// Writes `content` to the file at `path` and returns the path. Creates the folders above it. Ends the test program
/// when the file cannot be written, because the test proves nothing without it.
inline QString writeFile(const QString &path, const QByteArray &content = {})
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

/// Writes an entry of the type Application with the further lines `lines`, and returns the path.
inline QString writeDesktopEntry(const QString &path, const QByteArray &lines)
{
    return writeFile(path, "[Desktop Entry]\nType=Application\n" + lines);
}
