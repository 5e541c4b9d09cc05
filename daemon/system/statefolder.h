// SPDX-License-Identifier: MIT
// The folder with the daemon's files. Makes it, keeps other users out, and locks it for one daemon at a time. Owned by
// the daemon; one thread.
#pragma once

#include "base/result.h"

#include <QString>

class StateFolder
{
public:
    explicit StateFolder(const QString &path) : mPath(path) {}
    ~StateFolder();
    StateFolder(const StateFolder &) = delete;
    StateFolder &operator=(const StateFolder &) = delete;

    /// $XDG_STATE_HOME/quill-kestra, by default ~/.local/state/quill-kestra.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] const QString &path() const { return mPath; }
    [[nodiscard]] QString filePath(const QString &name) const;

    /// Why the folder cannot be used.
    struct OpenError : Error
    {
        enum class Cause { inUse, unusable }; ///< `inUse`: by another daemon

        Cause cause = Cause::unusable;
    };

    /// Makes the folder, locks the file "lock" in it, and makes folder and files private. Logs each path that could not
    /// be made private. Call it again after the folder was removed: the lock of a removed folder does not exclude
    /// daemons from its replacement.
    [[nodiscard]] Result<void, OpenError> open();
    /// Whether the folder still exists with the lock that open() has taken.
    [[nodiscard]] bool isLocked() const;

private:
    [[nodiscard]] Result<void, OpenError> lock();

    QString mPath;
    int mLock = -1;
};
