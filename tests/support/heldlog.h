// SPDX-License-Identifier: MIT
// A log that stops the thread that writes to it, so that a test can keep one thread of a daemon busy as long as it
// likes. The test's thread.
#pragma once

#include <QtGlobal>

#include <array>

/// A pipe that nobody reads: full, it holds whoever writes a line.
class HeldLog
{
public:
    HeldLog();
    ~HeldLog();
    Q_DISABLE_COPY_MOVE(HeldLog)

    /// Makes it the standard error of this process. To be called in a child before it runs its program.
    void becomeStandardError() const;

    /// From now on the next line holds its writer.
    void hold() const;
    /// Lets the writer continue. A few hundred lines more hold nobody.
    void release() const;

private:
    std::array<int, 2> mEnds{-1, -1}; // to read, to write
};
