// SPDX-License-Identifier: MIT
// The system's limit for the size of files (RLIMIT_FSIZE), for the start of a program. Call it before other threads
// run.
#pragma once

#include <csignal>

/// A write beyond the limit fails with an error, as on a full disk. Without this it ends the program. Programs that are
/// started have the usual handling again: they inherit no handler, but would inherit that a signal is ignored.
inline void makeFileSizeLimitAnError()
{
    std::signal(SIGXFSZ, [](int) {});
}
