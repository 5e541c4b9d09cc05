// SPDX-License-Identifier: MIT
// Makes the user's service manager start a program, as a service that ends with the program. Used by a daemon under
// restrictions, which programs that it starts itself would inherit. No state; main thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <functional>

namespace TransientService {

/// Whether programs that this process starts inherit its restrictions and cannot gain rights (NoNewPrivileges of its
/// service).
[[nodiscard]] bool isNeeded();

/// Requests that the manager on `bus` run `command` (the program's path, then its arguments, taken literally) in
/// `workingDirectory`, with the manager's environment. Does not wait. Calls `failed` on the thread of `context` if the
/// manager refuses or does not exist.
void start(const QDBusConnection &bus, const QStringList &command, const QString &workingDirectory, QObject *context,
           const std::function<void(const QString &reason)> &failed);

} // namespace TransientService
