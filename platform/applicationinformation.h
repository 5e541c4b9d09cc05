// SPDX-License-Identifier: MIT
// What an installed application says about itself. An application is a desktop entry (".desktop" file) or a bundle: a
// folder with a property list at "Contents/Info.plist". Both give the same information dictionary. No state; any
// thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace ApplicationInformation {

// Keys of the dictionary. All values are strings; a key whose value is not known is absent.
inline constexpr QLatin1StringView resolvedPathKey{"NSBundleResolvedPath"}; ///< absolute, links followed
inline constexpr QLatin1StringView nameKey{"CFBundleName"};                 ///< for people, in their language
inline constexpr QLatin1StringView executableKey{"CFBundleExecutable"};     ///< file name of the program
inline constexpr QLatin1StringView identifierKey{"CFBundleIdentifier"};     ///< of an entry its desktop-file id
inline constexpr QLatin1StringView signatureKey{"CFBundleSignature"};       ///< of an entry "StartupWMClass", or ""

/// File types of applications, as panels take them.
[[nodiscard]] QStringList fileTypes();

/// The information dictionary of the application at `path`. A bundle's is its property list with "NSBundleResolvedPath"
/// added, so it may hold other keys and values of any type. Absent when there is no application: nothing at the path,
/// not one of the two kinds, or its file cannot be read.
[[nodiscard]] std::optional<QVariantMap> read(const QString &path);

/// Where a choice of an application starts: "/Applications/" where that exists, else the first folder of the user's and
/// the system's data folders that holds desktop entries, else the root.
[[nodiscard]] QString startFolder();

} // namespace ApplicationInformation
