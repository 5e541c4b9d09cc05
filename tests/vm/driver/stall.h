// SPDX-License-Identifier: MIT
// Stalls a thread of another process in the middle of a key, like a fault in its program. Uses the kernel's interface
// for debuggers, so the program needs no support for it.
#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

/// The id of the thread with this name. Throws Failure when there is none.
[[nodiscard]] pid_t threadNamed(pid_t process, const std::string &name);

enum class Stall {
    sleeping, ///< waits for an event that never happens
    spinning, ///< occupies the processor
};

/// Waits until the thread named `threadName` of `process` writes to a file, which it does after `cause` at the latest,
/// and stalls it there. Throws Failure when the thread does not get there.
void stallThread(pid_t process, const std::string &threadName, Stall how, const std::function<void()> &cause);
