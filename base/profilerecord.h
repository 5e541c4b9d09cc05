// SPDX-License-Identifier: MIT
// Reads a profile record of the settings document. Pure functions; any thread may call them. keys/keymapping.h reads
// the entries of its "Keys", lighting/backlight.h its key lighting.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace ProfileRecord {

/// "ProfileName" as text to show: a number as its digits; "" if it is absent or of another type.
[[nodiscard]] QString name(const QVariantMap &profile);
/// "ProfileName"; absent unless it is text.
[[nodiscard]] std::optional<QString> givenName(const QVariantMap &profile);

/// "Keys": the mapping entries by key-code text; empty if it is absent or not a dictionary.
[[nodiscard]] QVariantMap keys(const QVariantMap &profile);
/// "Keys"; absent unless it is a dictionary.
[[nodiscard]] std::optional<QVariantMap> ownKeys(const QVariantMap &profile);

/// "AppInfo": the application that the profile belongs to; empty if it is absent or not a dictionary.
[[nodiscard]] QVariantMap appInfo(const QVariantMap &profile);
/// "AutoSwitchOn": other than 0 if the daemon switches to the profile when its application comes to the front. 0 if it
/// is absent or not a number.
[[nodiscard]] int autoSwitchValue(const QVariantMap &profile);

} // namespace ProfileRecord
