// SPDX-License-Identifier: MIT
// The application that a profile belongs to: the four texts in its "AppInfo". Pure functions; any thread.
#pragma once

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace ApplicationBinding {

/// Returns `appInfo` bound to the application with this information dictionary (platform/applicationinformation.h). The
/// application is shown by its name, or else by its executable. Texts that the dictionary lacks, or whose value is not
/// text, become "". Other keys of `appInfo` stay.
[[nodiscard]] QVariantMap bound(QVariantMap appInfo, const QVariantMap &information);

/// True if `appInfo` has a name, an executable or an identifier. Without any of them, no window can be recognised as
/// one of the application's.
[[nodiscard]] bool namesAnApplication(const QVariantMap &appInfo);

/// Returns `appInfo` without an application: all four texts are "", other keys stay.
[[nodiscard]] QVariantMap unbound(QVariantMap appInfo);

/// Returns the name to show for the application of the profile record; "" if it has none.
[[nodiscard]] QString applicationOf(const QVariantMap &profile);

/// True if both name the same application, without regard to letter case: the same identifier or the same signature;
/// if neither has these, the same executable or the same name.
[[nodiscard]] bool nameTheSameApplication(const QVariantMap &appInfo, const QVariantMap &other);

/// Returns the row of the first profile other than `row` that has automatic switching on and the application of the
/// profile in `row`. Absent if there is none.
[[nodiscard]] std::optional<int> otherProfileFollowing(const QVariantList &profiles, int row);

} // namespace ApplicationBinding
