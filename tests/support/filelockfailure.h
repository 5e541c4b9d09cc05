// SPDX-License-Identifier: MIT
// Simulates a file system on which files cannot be locked. The test's thread; affects the whole process.
#pragma once

#include <QList>
#include <QtGlobal>

/// During its lifetime, the first calls of flock() fail with `errorNumbers` (errno values), one after the other.
class FileLockFailure
{
public:
    explicit FileLockFailure(const QList<int> &errorNumbers);
    ~FileLockFailure();
    Q_DISABLE_COPY_MOVE(FileLockFailure)

    /// The number of failures that have not happened yet.
    [[nodiscard]] qsizetype left() const;
};
