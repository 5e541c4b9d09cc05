// SPDX-License-Identifier: MIT
// Log categories of the daemon. A line names the state before, the event and the state after. It begins with the party
// at fault: "client" (a request), "file" (the settings on disk), "keyboard", "desktop", or "daemon" (our bug).
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcDaemon)
Q_DECLARE_LOGGING_CATEGORY(lcRequests)
Q_DECLARE_LOGGING_CATEGORY(lcSettings)
Q_DECLARE_LOGGING_CATEGORY(lcKeyboard)
Q_DECLARE_LOGGING_CATEGORY(lcFront)

/// From now on each message of the process is one line, with "?" for characters that a terminal would obey. Paths and
/// names in messages come from other people's files, programs and keyboards.
void makeLogVisible();
