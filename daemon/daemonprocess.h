// SPDX-License-Identifier: MIT
// Assembles and runs the daemon: the state folder, the bus, the keyboard. Called once, on the main thread.
#pragma once

#include "daemon/settings/historylimits.h"

/// Exit codes of the daemon.
enum class DaemonExit : int {
    ended = 0,          ///< by SIGTERM, SIGINT or SIGHUP
    noBus = 2,          ///< there is no session bus, or the connection to it ended
    alreadyRunning = 3, ///< the request port has an owner, or another daemon uses the state folder
    folderUnusable = 4, ///< the state folder cannot be made, or its settings.plist cannot be read
};

/// Serves until a signal or the end of the bus; returns the exit code. Needs a QCoreApplication.
[[nodiscard]] DaemonExit runDaemon(const HistoryLimits &limits = {});
