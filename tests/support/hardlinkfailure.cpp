// SPDX-License-Identifier: MIT
#include "tests/support/hardlinkfailure.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace {

int failure = 0; // an errno value, 0 for none

} // namespace

// Stands before the C library's in this executable.
extern "C" int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags)
{
    // A file that was opened without a name is given its first one, which is no second one.
    const bool isFirstName = std::string_view(from).starts_with("/proc/self/fd/");
    if (failure != 0 && !isFirstName) {
        errno = failure;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

HardLinkFailure::HardLinkFailure(int errorNumber)
{
    failure = errorNumber;
}

HardLinkFailure::~HardLinkFailure()
{
    failure = 0;
}
