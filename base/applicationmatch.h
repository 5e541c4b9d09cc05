// SPDX-License-Identifier: MIT
// Finds the profile bound to the application in front: compares "AppInfo" of the profiles with the application's names.
// The window recognises applications with open windows by the same rule. Pure functions; any thread.
#pragma once

#include "base/frontapplication.h"

#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace ApplicationMatch {

/// The certainty with which an "AppInfo" means an application, in ascending order.
enum class Strength { none, name, executable, signature, identifier };

/// Ignores letter case; an empty or non-string value matches nothing.
/// - identifier: "identifier" is the id of the desktop entry.
/// - signature: "signature" or "identifier" is the window's class or instance.
/// - executable: the file name of "executable" is that of the window's program, or the window's class or instance.
///   Interpreters and launchers ("python3", "flatpak") do not match, because they start many applications.
/// - name: "application" is the window's class or instance, or the id of the desktop entry.
[[nodiscard]] Strength strengthOf(const QVariantMap &appInfo, const FrontApplication &application);

/// The index of the profile that has "AutoSwitchOn" and the strongest match of its "AppInfo". Of several, the `active`
/// one if it is among them, otherwise the first. Absent if there is none. Malformed records match nothing.
[[nodiscard]] std::optional<int> boundProfile(const QVariantList &profiles, const FrontApplication &application,
                                              int active);

} // namespace ApplicationMatch
