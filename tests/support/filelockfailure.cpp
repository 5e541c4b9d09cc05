// SPDX-License-Identifier: MIT
#include "tests/support/filelockfailure.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

QList<int> failures;

} // namespace

// Takes precedence over the C library's function in this executable.
extern "C" int flock(int descriptor, int operation)
{
    if (!failures.isEmpty()) {
        errno = failures.takeFirst();
        return -1;
    }
    return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}

FileLockFailure::FileLockFailure(const QList<int> &errorNumbers)
{
    failures = errorNumbers;
}

FileLockFailure::~FileLockFailure()
{
    failures.clear();
}

qsizetype FileLockFailure::left() const
{
    return failures.size();
}
