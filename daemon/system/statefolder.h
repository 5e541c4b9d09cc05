// SPDX-License-Identifier: MIT
// The folder in which the daemon keeps its files: that it is there, that other users cannot read it, and that one
// daemon at a time uses it. Owned by the daemon; one thread.
#pragma once

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

    enum class Result { open, inUse, unusable };

    /// Makes the folder, locks the file "lock" in it, and makes folder and files private; what cannot be made private
    /// is logged. errorText() says why it was not opened. Also for a folder that has gone since: the lock of a folder
    /// that was removed keeps no daemon from one that is made in its place.
    [[nodiscard]] Result open();
    [[nodiscard]] const QString &errorText() const { return mErrorText; }
    /// Whether the folder is there with the lock that open() has taken.
    [[nodiscard]] bool isLocked() const;

private:
    [[nodiscard]] Result lock();

    QString mPath;
    QString mErrorText;
    int mLock = -1;
};
