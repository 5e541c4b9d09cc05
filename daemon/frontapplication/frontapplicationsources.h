// SPDX-License-Identifier: MIT
// The kinds of desktop that report the application in front. No state; main thread only.
#pragma once

#include "daemon/frontapplication/frontapplicationwatch.h"

#include <QDBusConnection>

#include <vector>

/// All kinds, the most reliable one first.
[[nodiscard]] std::vector<FrontApplicationWatch::SourceKind> frontApplicationSources(const QDBusConnection &bus);
