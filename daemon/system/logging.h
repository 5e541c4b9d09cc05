// SPDX-License-Identifier: MIT
// Log categories of the daemon. A line says what was, what happened and what is now, and whose fault it is:
// "client" (a request), "file" (the settings on disk), "keyboard", "desktop", or "daemon" (our bug).
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcDaemon)
Q_DECLARE_LOGGING_CATEGORY(lcRequests)
Q_DECLARE_LOGGING_CATEGORY(lcSettings)
Q_DECLARE_LOGGING_CATEGORY(lcKeyboard)
Q_DECLARE_LOGGING_CATEGORY(lcFront)

/// From now on each message of the process is one line, with "?" for the characters that a terminal would obey: paths
/// and names in it come from other people's files, programs and keyboards.
void makeLogVisible();
