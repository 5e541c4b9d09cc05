// SPDX-License-Identifier: MIT
// The settings document: what makes one valid, and the pieces that the daemon adds to it. Pure functions over the
// dictionary tree {"Profiles", "Macros", "DeviceSettings"}; any thread may call them.
#pragma once

#include <QString>
#include <QVariantList>
#include <QVariantMap>

struct TreeSize;

namespace SettingsDocument {

inline constexpr int maximumProfiles = 20;

// Bounds of the whole tree, well inside those of the codec (base/propertylist.h), so that every reply that wraps
// the document can be written and read, too.
inline constexpr int maximumDepth = 500;                          ///< containers inside each other
inline constexpr int maximumNodes = 500'000;                      ///< values and dictionary keys
inline constexpr qsizetype maximumContentBytes = 4 * 1024 * 1024; ///< strings (two a UTF-16 code unit) and data
/// What a tree within these bounds takes as a binary property list: besides the content at most 17 bytes for a value, 4
/// for its place in its container and 4 for its offset.
inline constexpr qsizetype maximumBinaryBytes = maximumNodes * qsizetype(17 + 4 + 4) + maximumContentBytes;

/// Whether `value` is a number that is the position of one of `count` entries.
[[nodiscard]] bool isPosition(const QVariant &value, qsizetype count);
/// Whether a document of this size is within the bounds.
[[nodiscard]] bool isWithinBounds(const TreeSize &size);

/// What is wrong with `document`; empty when it is valid: at least one profile and at most maximumProfiles, at most
/// the macros and events of macrorecord.h, records that are dictionaries, "ActiveProfile" a position in "Profiles", and
/// nothing over the bounds above.
[[nodiscard]] QString problemOf(const QVariantMap &document);

/// `document` with the daemon's own pieces in order. Idempotent.
/// - every macro has a "macroID" of its own, which it keeps for life and which is never given to another macro;
/// - DeviceSettings/"LastMacroID" is the last one given out;
/// - DeviceSettings/"ProfileOSDOn" is the active profile's, where that has one;
/// - DeviceSettings/"GameMode" is a boolean.
[[nodiscard]] QVariantMap completed(QVariantMap document);

/// A valid document with one profile that maps nothing: what is left when even the factory settings cannot be read.
[[nodiscard]] QVariantMap minimal();
/// A valid profile record that maps nothing.
[[nodiscard]] QVariantMap emptyProfile(const QString &name);

[[nodiscard]] QVariantList profiles(const QVariantMap &document);
[[nodiscard]] QVariantList macros(const QVariantMap &document);
[[nodiscard]] int activeProfileIndex(const QVariantMap &document);
[[nodiscard]] QVariantMap activeProfile(const QVariantMap &document);
/// Whether another profile is active in `after`: not when the same one has only been changed, or has moved up because
/// one before it was deleted.
[[nodiscard]] bool hasOtherProfileActive(const QVariantMap &before, const QVariantMap &after);
[[nodiscard]] bool isGameModeOn(const QVariantMap &document);

[[nodiscard]] QVariantMap withProfiles(QVariantMap document, const QVariantList &profiles);
[[nodiscard]] QVariantMap withMacros(QVariantMap document, const QVariantList &macros);
[[nodiscard]] QVariantMap withActiveProfile(QVariantMap document, int index);
[[nodiscard]] QVariantMap withDeviceSetting(QVariantMap document, QLatin1StringView key, const QVariant &value);

/// Whether `profile` can be stored: its known keys have the types that readers rely on.
[[nodiscard]] bool isWellFormedProfile(const QVariant &profile);

} // namespace SettingsDocument
