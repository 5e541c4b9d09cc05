// SPDX-License-Identifier: MIT
// The profile that new profiles are made from: the first of the factory settings in Kestra.plist. No state; any thread.
#pragma once

#include <QVariantMap>

#include <optional>

/// Absent when the factory settings cannot be read or have no profile.
[[nodiscard]] std::optional<QVariantMap> factoryProfile();
