// SPDX-License-Identifier: MIT
// Has a thread of another process stand still in the middle of a key, as a fault in its program would: by the kernel's
// way for debuggers, so that the program needs nothing for it.
#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

/// The id of the thread with this name. Throws Failure when there is none.
[[nodiscard]] pid_t threadNamed(pid_t process, const std::string &name);

enum class Stall {
    sleeping, ///< waits for something that never comes
    spinning, ///< keeps the processor
};

/// Waits until the thread named `threadName` of `process` writes to a file, which it does at last after `cause`, and lets
/// it go no further. Throws Failure when it does not come to that.
void stallThread(pid_t process, const std::string &threadName, Stall how, const std::function<void()> &cause);
