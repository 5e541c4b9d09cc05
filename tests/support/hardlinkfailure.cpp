// SPDX-License-Identifier: MIT
#include "tests/support/hardlinkfailure.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace {

int failure = 0; // an errno value, 0 for none

} // namespace

// Takes precedence over the C library's function in this executable.
extern "C" int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags)
{
    // The first name of a file that was opened without one is not a second name.
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
