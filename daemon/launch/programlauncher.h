// SPDX-License-Identifier: MIT
// Starts what a key is to launch: a desktop entry by its Exec line, or a bundle folder by its information dictionary.
// No state; the daemon's thread.
#pragma once

#include <QString>
#include <QStringList>

class ProgramLauncher
{
public:
    /// What starting a path comes to.
    struct Plan
    {
        QStringList command; ///< the program's absolute path, then its arguments
        QString workingDirectory;
        QString refusal; ///< why it is not started; empty when it is

        [[nodiscard]] bool isRefused() const { return !refusal.isEmpty(); }
    };

    /// - A ".desktop" file of type Application: the words of Exec, in Path. Refused when it is hidden, wants a terminal
    ///   (which of them is the desktop's business), its TryExec cannot be run, or it has no usable Exec line.
    /// - A folder ".app": Contents/MacOS/ and the CFBundleExecutable of Contents/Info.plist.
    /// - Anything else is refused. `path` must be absolute.
    /// Programs without a path are looked for in $PATH; where no other directory is named, it is the home directory.
    [[nodiscard]] static Plan planFor(const QString &path);

    /// Starts `path` detached and without a shell; logs what it started or why it did not. Where this process runs
    /// under restrictions, the service manager of the user starts it, free of them.
    static void launch(const QString &path);
};
