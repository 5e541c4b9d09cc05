// SPDX-License-Identifier: MIT
// Ending other processes by name: the one place that does.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace Processes {

/// Ends (SIGTERM) every process named exactly `name` that this user may signal: the user's own in all sessions, for
/// root those of all users. Errors are ignored.
void endAllNamed(const QString &name);

/// The IDs of all processes named exactly `name`, of any user. A process is named like the file of its executable, like
/// the link that it was started by, and like the script that an interpreter runs and whose first line names that
/// interpreter. The name that the kernel keeps has no more than 15 characters, so that alone is never compared.
/// `procFolder`: where the process file system is.
[[nodiscard]] std::vector<qint64> idsOfAllNamed(const QString &name,
                                                const QString &procFolder = QStringLiteral("/proc"));

/// What the program calls to end processes; endAllNamed() unless a test puts its own in place.
using Ender = std::function<void(const QString &name)>;

} // namespace Processes
