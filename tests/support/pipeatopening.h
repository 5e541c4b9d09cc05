// SPDX-License-Identifier: MIT
// A file that becomes a pipe while a program opens it. The test's thread; it holds for the whole process.
#pragma once

#include <QString>

/// While it lives, the first open() of the file `path` finds a pipe (fifo) in its place, without a writer.
class PipeAtOpening
{
public:
    explicit PipeAtOpening(const QString &path);
    ~PipeAtOpening();
    Q_DISABLE_COPY_MOVE(PipeAtOpening)

    /// True when the file was opened so that the call would have waited for a writer. The test itself does not wait.
    [[nodiscard]] bool hasWaited() const;
    /// True when the file has been opened.
    [[nodiscard]] bool wasOpened() const;
};
