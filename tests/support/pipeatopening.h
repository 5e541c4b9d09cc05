// SPDX-License-Identifier: MIT
// A file that becomes a pipe while a program opens it. The test's thread; affects the whole process.
#pragma once

#include <QString>

/// During its lifetime, the first open() of the file `path` finds a pipe (fifo) in its place, without a writer.
class PipeAtOpening
{
public:
    explicit PipeAtOpening(const QString &path);
    ~PipeAtOpening();
    Q_DISABLE_COPY_MOVE(PipeAtOpening)

    /// Whether the call that opened the file would have waited for a writer. The test itself does not wait.
    [[nodiscard]] bool hasWaited() const;
    /// Whether a call has opened the file.
    [[nodiscard]] bool wasOpened() const;
};
