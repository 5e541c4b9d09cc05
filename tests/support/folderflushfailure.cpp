// SPDX-License-Identifier: MIT
#include "tests/support/folderflushfailure.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

int failure = 0; // an errno value, 0 for none
int failures = 0;

} // namespace

// Takes precedence over the C library's function in this executable.
extern "C" int fsync(int descriptor)
{
    struct stat status = {};
    if (failure != 0 && ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ++failures;
        errno = failure;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

FolderFlushFailure::FolderFlushFailure(int errorNumber)
{
    failure = errorNumber;
    failures = 0;
}

FolderFlushFailure::~FolderFlushFailure()
{
    failure = 0;
}

int FolderFlushFailure::count() const
{
    return failures;
}
