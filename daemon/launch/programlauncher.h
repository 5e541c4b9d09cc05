// SPDX-License-Identifier: MIT
// Starts the program of a key: a desktop entry by its Exec line, or a bundle folder by its information dictionary. No
// state; main thread only.
#pragma once

#include "base/result.h"

#include <QString>
#include <QStringList>

class ProgramLauncher
{
public:
    struct Plan
    {
        QStringList command; ///< the program's absolute path, then its arguments
        QString workingDirectory;
    };

    /// Plans the launch of `path`. The error is the reason for a refusal.
    /// - A ".desktop" file of type Application: the words of Exec, in Path. Refused if it is hidden, needs a terminal
    ///   (which only the desktop can choose), has a TryExec that cannot run, or has no usable Exec line.
    /// - A folder ".app": Contents/MacOS/ and the CFBundleExecutable of Contents/Info.plist.
    /// - Anything else is refused. `path` must be absolute.
    /// Programs without a path are looked up in $PATH. Unless a directory is named, they run in the home directory.
    [[nodiscard]] static Result<Plan> planFor(const QString &path);

    /// Starts `path` detached and without a shell; logs the start or the reason for a refusal. If this process runs
    /// under restrictions, the user's service manager starts the program without them.
    static void launch(const QString &path);
};
