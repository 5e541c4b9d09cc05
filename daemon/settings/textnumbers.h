// SPDX-License-Identifier: MIT
// Reads numbers in records from old-style text files, which can express numbers only as texts. Pure functions; any
// thread.
#pragma once

#include <QVariantMap>

namespace TextNumbers {

/// The profile record with decimal texts turned into numbers wherever the daemon reads a number: its switches, its key
/// lighting and its key assignments. Other values remain unchanged, including the path of a program.
[[nodiscard]] QVariantMap readInProfile(QVariantMap profile);

/// The same for a macro record: its pause and the four fields of its events.
[[nodiscard]] QVariantMap readInMacro(QVariantMap macro);

} // namespace TextNumbers
