// SPDX-License-Identifier: MIT
// Ending other processes by name: the one place that does.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace Processes {

/// Ends (SIGTERM) every process of this user whose executable is named exactly `name`. Errors are ignored.
void endAllNamed(const QString &name);

/// The ids of those processes. The kernel keeps only 15 characters of a name, so the file name of the executable is
/// compared (where that cannot be read, of the first argument). `procFolder`: where the process file system is.
[[nodiscard]] std::vector<qint64> idsOfAllNamed(const QString &name,
                                                const QString &procFolder = QStringLiteral("/proc"));

/// What the program calls to end processes; endAllNamed() unless a test puts its own in place.
using Ender = std::function<void(const QString &name)>;

} // namespace Processes
