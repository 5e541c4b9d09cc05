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
