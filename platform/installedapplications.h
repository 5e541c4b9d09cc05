// SPDX-License-Identifier: MIT
// The applications that a menu of the desktop would offer, read from their desktop entries. No state; any thread.
#pragma once

#include "platform/applicationinformation.h"

#include <QList>
#include <QString>
#include <QStringList>

struct InstalledApplication
{
    QString path;            ///< of the desktop entry
    QString identifier;      ///< desktop file ID
    QString name;            ///< in the user's language; never empty
    QString icon;            ///< name in the icon theme or full path; may be empty
    QString executable;      ///< file name of the program
    QString windowClass;     ///< "StartupWMClass"; may be empty
    QStringList searchTexts; ///< other texts by which a user may look for it: generic name, keywords, untranslated name
};

namespace InstalledApplications {

/// The applications of the entries in `folders` and below, in the order of their names. Of entries with the same
/// desktop file ID, only the first folder's counts, even if that one is hidden or cannot be read. An application is
/// left out when
/// - its entry is hidden (Hidden, NoDisplay), or is meant for other desktops than $XDG_CURRENT_DESKTOP names
///   (OnlyShowIn, NotShowIn),
/// - its entry is broken: it is not of the type Application, has no name, or has no command line that may be run,
/// - its program of "TryExec" is not installed,
/// - it runs in a terminal: the daemon does not launch it, and its window is the terminal's.
[[nodiscard]] QList<InstalledApplication> read(const QStringList &folders = ApplicationInformation::entryFolders());

} // namespace InstalledApplications
