// SPDX-License-Identifier: MIT
// Where a profile or macro that is exported goes: the same for the window's panels and for kestractl. No state; any
// thread.
#pragma once

#include <QString>

/// `name` as the name of a file that gets "." and `suffix`: cut, between two characters, where both together would be
/// longer than file systems take.
[[nodiscard]] QString exportFileName(QString name, const QString &suffix);

/// The file that an export to the path `chosen` writes: "." and `suffix` (without a dot) are always appended, even to a
/// name that ends in them. Deliberate: the user names the profile, and the program makes a file name of it. The name in
/// `chosen` is cut as by exportFileName().
[[nodiscard]] QString exportPath(const QString &chosen, const QString &suffix);
