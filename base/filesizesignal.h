// SPDX-License-Identifier: MIT
// Handles the system's limit for the size of files (RLIMIT_FSIZE), at the start of a program before other threads run.
#pragma once

#include <csignal>

/// Makes a write beyond the limit fail with an error, as on a full disk, instead of ending the program. A handler
/// serves better than ignoring the signal: programs that this one starts inherit only the latter.
inline void makeFileSizeLimitAnError()
{
    std::signal(SIGXFSZ, [](int) {});
}
