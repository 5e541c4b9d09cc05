// SPDX-License-Identifier: MIT
// Ending other processes by name: the one place that does.
#pragma once

#include <QString>

#include <functional>

namespace Processes {

/// Ends (SIGTERM) every process of this user whose executable is named exactly `name`. Names longer than the 15
/// characters the kernel keeps are compared with the full name of the executable. Errors are ignored.
void endAllNamed(const QString &name);

/// What the program calls to end processes; endAllNamed() unless a test puts its own in place.
using Ender = std::function<void(const QString &name)>;

} // namespace Processes
