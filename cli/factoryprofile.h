// SPDX-License-Identifier: MIT
// The profile that new profiles are made from: the first of the factory settings in Kestra.plist. No state; any thread.
#pragma once

#include "cli/commandresult.h"

#include <QVariantMap>

/// Wrong usage when the factory settings cannot be read or have no profile.
[[nodiscard]] CommandResult<QVariantMap> factoryProfile();
