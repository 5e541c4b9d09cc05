// SPDX-License-Identifier: MIT
// From the words of a command line to the row of the command table that runs.
#pragma once

#include "cli/console.h"

#include <QStringList>

/// Runs kestractl with `arguments` (without the program's name). Main thread; needs a QCoreApplication.
[[nodiscard]] ExitCode runCommandLine(const QStringList &arguments, Console &console);
