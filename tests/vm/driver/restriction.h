// SPDX-License-Identifier: MIT
// What the user service forbids the daemon, for the calling process and all that it becomes: the kernel kills it when it
// asks for that, where the service would be told an error.
#pragma once

#include <string>

/// True when run.py could find out what the service allows.
[[nodiscard]] bool isRestrictionKnown();

/// For between fork and exec: only the kernel's calls in /calls (numbers), only sockets of this machine, no memory that
/// is written and executed. False when it could not be.
[[nodiscard]] bool restrictThisProcess();
