// SPDX-License-Identifier: MIT
// The settings document: its rules of validity, the entries that the daemon adds, and changes. Pure functions over the
// dictionary tree {"Profiles", "Macros", "DeviceSettings"}, which base/document.h reads; any thread.
#pragma once

#include "base/result.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>

struct TreeSize;

namespace SettingsDocument {

inline constexpr int maximumProfiles = 20;

// Bounds of the whole tree. They are well inside those of the codec (base/propertylist.h), so every reply that contains
// the document can also be written and read.
inline constexpr int maximumDepth = 500;                          ///< containers inside each other
inline constexpr int maximumNodes = 500'000;                      ///< values and dictionary keys
inline constexpr qsizetype maximumContentBytes = 4 * 1024 * 1024; ///< strings (two per UTF-16 code unit) and data
/// The maximum size of a tree within these bounds as a binary property list. Each value takes, besides its content, at
/// most 17 bytes for itself, 4 for its place in its container and 4 for its offset.
inline constexpr qsizetype maximumBinaryBytes = maximumNodes * qsizetype(17 + 4 + 4) + maximumContentBytes;

/// Whether `value` is the index of one of `count` entries.
[[nodiscard]] bool isPosition(const QVariant &value, qsizetype count);
/// Whether a document of this size is within the bounds.
[[nodiscard]] bool isWithinBounds(const TreeSize &size);

/// Fails, with the reason, if `document` is not valid. A valid document has 1 to maximumProfiles profiles and at most
/// the macros and events of macrorecord.h. Its records are dictionaries, its "ActiveProfile" is an index in "Profiles",
/// and it is within the bounds above.
[[nodiscard]] Result<void> validate(const QVariantMap &document);

/// `document` with the daemon's own entries in order. Idempotent.
/// - Every macro has a "macroID" of its own, which it keeps for life and which no other macro ever gets.
/// - DeviceSettings/"LastMacroID" is the last one assigned.
/// - DeviceSettings/"ProfileOSDOn" is the active profile's, if it has one.
/// - DeviceSettings/"GameMode" is a boolean.
[[nodiscard]] QVariantMap completed(QVariantMap document);

/// A valid document with one profile that maps nothing, for when even the factory settings cannot be read.
[[nodiscard]] QVariantMap minimal();
/// A valid profile record that maps nothing.
[[nodiscard]] QVariantMap emptyProfile(const QString &name);

/// Whether another profile is active in `after`. False if the same profile has only been changed, or has moved up after
/// the deletion of an earlier one.
[[nodiscard]] bool hasOtherProfileActive(const QVariantMap &before, const QVariantMap &after);

[[nodiscard]] QVariantMap withProfiles(QVariantMap document, const QVariantList &profiles);
[[nodiscard]] QVariantMap withMacros(QVariantMap document, const QVariantList &macros);
[[nodiscard]] QVariantMap withActiveProfile(QVariantMap document, int index);
[[nodiscard]] QVariantMap withDeviceSetting(QVariantMap document, QLatin1StringView key, const QVariant &value);

/// Whether `profile` can be stored: its known keys have the types that readers rely on.
[[nodiscard]] bool isWellFormedProfile(const QVariant &profile);

} // namespace SettingsDocument
