// SPDX-License-Identifier: MIT
// Ends other processes by name; no other code does.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace Processes {

/// Sends SIGTERM to every process named exactly `name` that this user may signal: the user's own in all sessions, or
/// those of all users for root. Ignores errors.
void endAllNamed(const QString &name);

/// The IDs of all processes named exactly `name`, of any user. A process has the name of its executable file, of the
/// link that started it, and of the script that an interpreter runs if the script's first line names that interpreter.
/// The kernel's own copy of a name is cut to 15 characters and therefore never compared alone. `procFolder` is the
/// folder of the process file system.
[[nodiscard]] std::vector<qint64> idsOfAllNamed(const QString &name,
                                                const QString &procFolder = QStringLiteral("/proc"));

/// The function with which the program ends processes: endAllNamed(), unless a test replaces it.
using Ender = std::function<void(const QString &name)>;

} // namespace Processes
