// SPDX-License-Identifier: MIT
// Makes an invalid settings document valid, and keeps as much of it as possible. Pure functions; any thread.
#pragma once

#include <QStringList>
#include <QVariantMap>

#include <optional>

struct RepairedSettings
{
    QVariantMap document;
    QStringList repairs; ///< one line each: the wrong value and its replacement; empty for a valid document
};

/// `document`, repaired until SettingsDocument::validate() accepts it. Only wrong values change:
/// - Profiles and macros keep their indices, because keys refer to them. An unreadable one becomes empty.
/// - A wrong value of a profile is removed. A macro with a wrong value in its events loses all events: a part of them
///   could leave a key pressed.
/// - Numbers that are decimal texts become numbers.
/// - Of too many profiles or macros, the first ones stay.
/// - A document over the bounds loses large values (documentbounds.h).
/// Absent if `document` has no profiles, macros or device settings to keep.
[[nodiscard]] std::optional<RepairedSettings> repairedSettings(const QVariantMap &document);
