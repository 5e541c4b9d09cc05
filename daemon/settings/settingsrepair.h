// SPDX-License-Identifier: MIT
// Makes a settings document valid that is not, and keeps as much of it as possible. Pure functions; any thread.
#pragma once

#include <QStringList>
#include <QVariantMap>

#include <optional>

struct RepairedSettings
{
    QVariantMap document;
    QStringList repairs; ///< one line each: what was wrong, and what is there now; empty for a valid document
};

/// `document` as SettingsDocument::problemOf() accepts it. Each wrong value is repaired by itself, and all others stay:
/// - Profiles and macros keep their positions, because keys refer to them. One that cannot be read is an empty one.
/// - A wrong value of a profile is left out. A macro with a wrong value in its events has no events: a part of them
///   could leave a key pressed.
/// - Numbers that are decimal texts become numbers.
/// - Of too many profiles or macros, the first ones stay.
/// - From a document over the bounds, large values are left out (documentbounds.h).
/// Absent when `document` has neither profiles nor macros nor settings of the device: nothing could be kept.
[[nodiscard]] std::optional<RepairedSettings> repairedSettings(const QVariantMap &document);
