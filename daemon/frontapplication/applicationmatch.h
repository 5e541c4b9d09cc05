// SPDX-License-Identifier: MIT
// Which profile is bound to the application in front: "AppInfo" of the profiles against the application's names. Pure
// functions; any thread.
#pragma once

#include "daemon/frontapplication/frontapplication.h"

#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace ApplicationMatch {

/// How surely an "AppInfo" means an application: the greater, the surer.
enum class Strength { none, name, executable, signature, identifier };

/// Compared without regard to letter case; an empty or non-string value matches nothing.
/// - identifier: "identifier" is the id of the desktop entry;
/// - signature: "signature", or "identifier", is the window's class or instance;
/// - executable: the file name of "executable" is that of the window's program, or its class or instance.
///   Interpreters and launchers ("python3", "flatpak") are left out: they start many applications;
/// - name: "application" is the window's class or instance, or the id of the desktop entry.
[[nodiscard]] Strength strengthOf(const QVariantMap &appInfo, const FrontApplication &application);

/// Position of the profile that has "AutoSwitchOn" and whose "AppInfo" matches most surely; of several, the `active`
/// one if it is among them, else the first. Absent when there is none. Records of the wrong shape match nothing.
[[nodiscard]] std::optional<int> boundProfile(const QVariantList &profiles, const FrontApplication &application,
                                              int active);

} // namespace ApplicationMatch
