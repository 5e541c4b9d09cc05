// SPDX-License-Identifier: MIT
// The kinds of desktop that report the application in front. No state; main thread only.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"
#include "daemon/frontapplication/gnomeshell.h"

#include <QDBusConnection>

#include <vector>

/// All kinds, the most reliable one first. `shell` must outlive the watch that gets them.
[[nodiscard]] std::vector<FrontApplicationWatch::SourceKind> frontApplicationSources(const QDBusConnection &bus,
                                                                                     const GnomeShell &shell);
