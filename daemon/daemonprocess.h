// SPDX-License-Identifier: MIT
// Puts the daemon together and runs it: the state folder, the bus, the keyboard. Called once, on the main thread.
#pragma once

/// Exit codes of the daemon.
enum class DaemonExit : int {
    ended = 0,          ///< by SIGTERM, SIGINT or SIGHUP
    noBus = 2,          ///< there is no session bus, or it went away
    alreadyRunning = 3, ///< the request port has an owner, or another daemon uses the state folder
    folderUnusable = 4, ///< the state folder cannot be made, or settings.plist in it cannot be read
};

/// Serves until a signal ends it; returns the exit code. Needs a QCoreApplication.
[[nodiscard]] DaemonExit runDaemon();
