// SPDX-License-Identifier: MIT
// A file system on which files cannot be locked. The test's thread; it holds for the whole process.
#pragma once

#include <QList>
#include <QtGlobal>

/// While it lives, the first calls of flock() fail with `errorNumbers`, errno values, one after the other.
class FileLockFailure
{
public:
    explicit FileLockFailure(const QList<int> &errorNumbers);
    ~FileLockFailure();
    Q_DISABLE_COPY_MOVE(FileLockFailure)

    /// How many of them have not been met.
    [[nodiscard]] qsizetype left() const;
};
