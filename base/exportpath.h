// SPDX-License-Identifier: MIT
// File names for exported profiles and macros, the same for the window's panels and for kestractl. No state; any
// thread.
#pragma once

#include <QString>

/// Returns `name` as the name of a file that gets "." and `suffix`. Cuts it, between two characters, if the whole would
/// be longer than file systems accept.
[[nodiscard]] QString exportFileName(QString name, const QString &suffix);

/// Returns the file that an export to the path `chosen` writes. Always appends "." and `suffix` (without a dot), even
/// to a name that ends in them. Deliberate: the user names the profile, and the program makes a file name of it. Cuts
/// the name in `chosen` like exportFileName().
[[nodiscard]] QString exportPath(const QString &chosen, const QString &suffix);
