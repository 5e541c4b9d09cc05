// SPDX-License-Identifier: MIT
// Describes an installed application: a desktop entry (".desktop" file), or a bundle, which is a folder with a property
// list at "Contents/Info.plist". Both kinds yield the same information dictionary. No state; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace ApplicationInformation {

// Keys of the dictionary. The values are strings, unless the property list of a bundle has other types. The key of an
// unknown value is absent.
inline constexpr QLatin1StringView resolvedPathKey{"NSBundleResolvedPath"}; ///< absolute, with links resolved
inline constexpr QLatin1StringView nameKey{"CFBundleName"};                 ///< displayed name, in the user's language
inline constexpr QLatin1StringView executableKey{"CFBundleExecutable"};     ///< file name of the program
inline constexpr QLatin1StringView identifierKey{"CFBundleIdentifier"};     ///< of an entry: its desktop file ID
inline constexpr QLatin1StringView signatureKey{"CFBundleSignature"};       ///< of an entry: "StartupWMClass" or ""

/// Suffixes of application files, in the form that file panels expect.
[[nodiscard]] QStringList fileTypes();

/// The information dictionary of the application at `path`. For a bundle it is the property list with
/// "NSBundleResolvedPath" added, so it may hold other keys and values of any type. Absent when there is no application:
/// nothing exists at the path, it is neither of the two kinds, or its file cannot be read.
[[nodiscard]] std::optional<QVariantMap> read(const QString &path);

/// The folder in which a choice of an application starts: "/Applications/" if it exists, otherwise the first of the
/// user's and the system's application folders that holds desktop entries, otherwise the root.
[[nodiscard]] QString startFolder();

} // namespace ApplicationInformation
