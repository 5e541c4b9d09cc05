// SPDX-License-Identifier: MIT
// Has the service manager of the user start a program, as a service that goes when the program does. For a daemon that
// runs under restrictions, which a program that it starts itself would inherit. No state; the daemon's thread.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <functional>

namespace TransientService {

/// Whether this process may gain no rights by starting a program (NoNewPrivileges of its service), and has handed that
/// and its other restrictions on to each.
[[nodiscard]] bool isNeeded();

/// Asks the manager on `bus` to run `command` (the program's path, then its arguments, taken as they are) in
/// `workingDirectory`, with the manager's environment. Does not wait: `failed` is called on the thread of `context`
/// when the manager refuses or there is none.
void start(const QDBusConnection &bus, const QStringList &command, const QString &workingDirectory, QObject *context,
           const std::function<void(const QString &reason)> &failed);

} // namespace TransientService
