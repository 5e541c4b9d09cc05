// SPDX-License-Identifier: MIT
// How the program reads a property-list value that should be a number. Pure functions; any thread may call them.
#pragma once

#include <QVariant>

namespace PlistNumbers {

/// `value` as a 32-bit integer: the low 32 bits of an integer, a real cut towards zero and then the same (0 when it
/// does not fit into 64 bits or is not a number), a boolean as 0 or 1, a string as the decimal number that it begins
/// with, held at the nearest end of the range. Anything else, and nothing, is 0.
[[nodiscard]] qint32 integerValue(const QVariant &value);

} // namespace PlistNumbers
