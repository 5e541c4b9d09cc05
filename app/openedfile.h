// SPDX-License-Identifier: MIT
// A profile or macro file that the user has opened from outside the program, and its effect once it is added.
// No state; any thread.
#pragma once

#include "base/propertylist.h"

#include <QStringList>
#include <QUrl>
#include <QVariantMap>

struct OpenedFile
{
    enum class Kind { profile, macro };

    Kind kind = Kind::profile;
    QString path;       ///< absolute
    QVariantMap record; ///< as the file has it

    /// Decides by the content. Without a record of a known kind, the error is that of a file without a dictionary.
    [[nodiscard]] static Result<OpenedFile, PropertyList::ReadError> read(const QString &path);
};

/// The absolute path of an argument: a path, or the address of a local file. Empty for the address of anything else.
/// Programs that start others may pass either.
[[nodiscard]] QString pathOfArgument(const QString &argument);

/// The same for another process: the address of the local file, or else the argument unchanged.
[[nodiscard]] QString addressOfArgument(const QString &argument);

/// The effect of a profile on this computer. A file can have any values.
struct ProfileContent
{
    QStringList programs;    ///< one line for each key that starts a program: its name and the path
    int macros = 0;          ///< the number of macros that its keys play
    QStringList application; ///< the application that the profile belongs to, with its executable; empty for none

    [[nodiscard]] static ProfileContent of(const QVariantMap &profile);
};
