// SPDX-License-Identifier: MIT
// Starts a program that is not a child of this process and shares nothing with it. No state; any thread.
#pragma once

#include "base/result.h"

#include <QString>
#include <QStringList>

namespace DetachedProcess {

/// Set by the daemon for itself, and not passed on. Makes Qt's event loops wait with poll() instead of GLib's loop.
inline constexpr char withheldVariable[] = "QT_NO_GLIB";

/// Runs `command` (the program's path, then its arguments) in `workingDirectory`, as this user, in a session of its
/// own. The program gets this environment without withheldVariable, default signals, and /dev/null as input, output and
/// errors. It has no other open files, no locked memory, no real-time priority and no limit for it. It outlives this
/// process and leaves no zombie. Must not be called on a thread with real-time priority. Succeeds when the program
/// runs; the error is the system's reason.
[[nodiscard]] Result<void> start(const QStringList &command, const QString &workingDirectory);

} // namespace DetachedProcess
