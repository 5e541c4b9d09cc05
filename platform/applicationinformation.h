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

/// The folders of desktop entries that may exist, the one with the highest rank first: the user's and the system's data
/// folders, then those of Flatpak and Snap, which a session started without them lacks in its variables.
[[nodiscard]] QStringList entryFolders();

/// The desktop file ID of the entry at `path`: the path relative to a folder of desktop entries, with "-" for "/";
/// outside such folders the file name. ("Desktop File ID" of freedesktop.org's desktop entries, version 1.5.)
[[nodiscard]] QString desktopFileId(const QString &path, const QStringList &folders = entryFolders());

/// The file name of the program that the command line of an entry starts: "env" and its assignments of variables are
/// skipped. Empty if nothing else is left.
[[nodiscard]] QString programOf(const QStringList &commandLine);

/// The folder in which a choice of an application starts: "/Applications/" if it exists, otherwise the first of the
/// user's and the system's application folders that holds desktop entries, otherwise the root.
[[nodiscard]] QString startFolder();

} // namespace ApplicationInformation
