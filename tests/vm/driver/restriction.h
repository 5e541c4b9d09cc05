// SPDX-License-Identifier: MIT
// Applies the restrictions of the user service to the calling process and all programs that it becomes. The kernel
// kills the process where the service would return an error.
#pragma once

/// Whether run.py could determine what the service allows.
[[nodiscard]] bool isRestrictionKnown();

/// For use between fork and exec. Allows only the system calls in /calls (numbers) and sockets of this machine. Memory
/// that is both writable and executable is refused with an error. Returns false when the restriction failed.
[[nodiscard]] bool restrictThisProcess();
