// SPDX-License-Identifier: MIT
// A disk that does not confirm what was done in a folder. The test's thread; it holds for the whole process.
#pragma once

#include <QtGlobal>

/// While it lives, flushing a folder (fsync) fails with `errorNumber`, an errno value; flushing a file does not.
class FolderFlushFailure
{
public:
    explicit FolderFlushFailure(int errorNumber);
    ~FolderFlushFailure();
    Q_DISABLE_COPY_MOVE(FolderFlushFailure)

    /// How often it has failed.
    [[nodiscard]] int count() const;
};
