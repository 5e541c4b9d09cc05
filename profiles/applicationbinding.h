// SPDX-License-Identifier: MIT
// How a profile names the application it belongs to: the four texts in its "AppInfo". Pure functions; any thread.
#pragma once

#include <QString>
#include <QVariantMap>

namespace ApplicationBinding {

/// `appInfo` bound to the application with this information dictionary (platform/applicationinformation.h). It is shown
/// by its name, else by its executable. What the dictionary lacks, or has as no text, becomes ""; other keys of
/// `appInfo` are kept.
[[nodiscard]] QVariantMap bound(QVariantMap appInfo, const QVariantMap &information);

/// Whether `appInfo` has a name, an executable or an identifier. Without all three, no window can be recognised as one
/// of the application.
[[nodiscard]] bool namesAnApplication(const QVariantMap &appInfo);

/// `appInfo` without an application: all four texts "", other keys kept.
[[nodiscard]] QVariantMap unbound(QVariantMap appInfo);

/// The name to show for the application of the profile record; "" when it has none.
[[nodiscard]] QString applicationOf(const QVariantMap &profile);

} // namespace ApplicationBinding
