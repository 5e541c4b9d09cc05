// SPDX-License-Identifier: MIT
// A log that stops the thread that writes to it. With it, a test can keep one thread of a daemon busy for any time. The
// test's thread.
#pragma once

#include <QtGlobal>

#include <array>

/// A pipe without a reader: when it is full, it blocks the next writer.
class HeldLog
{
public:
    HeldLog();
    ~HeldLog();
    Q_DISABLE_COPY_MOVE(HeldLog)

    /// Makes it the standard error of this process. Must be called in a child before the child runs its program.
    void becomeStandardError() const;

    /// From now on the next line blocks its writer.
    void hold() const;
    /// Lets the writer continue. The next few hundred lines do not block.
    void release() const;

private:
    std::array<int, 2> mEnds{-1, -1}; // read end, write end
};
