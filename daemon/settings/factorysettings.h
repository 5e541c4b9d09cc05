// SPDX-License-Identifier: MIT
// The settings of a new keyboard: "Default Settings" of Kestra.plist. No state; any thread.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// The factory document in the property list at `path`, completed. Absent, and logged, if it cannot be read or is not
/// valid.
[[nodiscard]] std::optional<QVariantMap> readFactorySettings(const QString &path);
