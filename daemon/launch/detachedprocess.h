// SPDX-License-Identifier: MIT
// Starts a program that is no child of this process and shares nothing with it. No state; any thread.
#pragma once

#include <QString>
#include <QStringList>

namespace DetachedProcess {

/// Set by the daemon for itself, and not passed on: has Qt's event loops wait with poll() instead of GLib's loop.
inline constexpr char withheldVariable[] = "QT_NO_GLIB";

/// Runs `command` (the program's path, then its arguments) in `workingDirectory`, as this user, with this environment
/// but for withheldVariable, in a session of its own: no signal blocked or ignored, no file open but /dev/null as
/// input, output and errors, no memory locked, no limit of its time with real-time priority, which it does not have.
/// It outlives this process and leaves no zombie. Not for a thread that has real-time priority. 0 when it runs, else
/// the number of the error (errno).
[[nodiscard]] int start(const QStringList &command, const QString &workingDirectory);

} // namespace DetachedProcess
