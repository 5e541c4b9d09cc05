// SPDX-License-Identifier: MIT
// Simulates a disk that does not confirm changes in a folder. The test's thread; affects the whole process.
#pragma once

#include <QtGlobal>

/// During its lifetime, flushing a folder (fsync) fails with `errorNumber`, an errno value. Flushing a file succeeds.
class FolderFlushFailure
{
public:
    explicit FolderFlushFailure(int errorNumber);
    ~FolderFlushFailure();
    Q_DISABLE_COPY_MOVE(FolderFlushFailure)

    /// The number of failures so far.
    [[nodiscard]] int count() const;
};
