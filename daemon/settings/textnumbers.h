// SPDX-License-Identifier: MIT
// Records that come from an old-style text file, which knows no numbers: their numbers are texts there. Pure functions;
// any thread.
#pragma once

#include <QVariantMap>

namespace TextNumbers {

/// The profile record with numbers where the daemon reads numbers and the record has them as decimal texts: its
/// switches, its light and its key assignments. Any other value stays what it is, as does the path of a program.
[[nodiscard]] QVariantMap readInProfile(QVariantMap profile);

/// The same of a macro record: its pause and the four fields of its events.
[[nodiscard]] QVariantMap readInMacro(QVariantMap macro);

} // namespace TextNumbers
