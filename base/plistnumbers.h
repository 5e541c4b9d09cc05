// SPDX-License-Identifier: MIT
// Reads a property-list value that should be a number. Pure functions; any thread may call them.
#pragma once

#include <QVariant>

namespace PlistNumbers {

/// Returns `value` as a 32-bit integer. An integer gives its low 32 bits. A real is cut towards zero first; it gives 0
/// if it does not fit into 64 bits or is not a number. A boolean gives 0 or 1. A string gives the decimal number at its
/// start, limited to the range. Any other value, or none, gives 0.
[[nodiscard]] qint32 integerValue(const QVariant &value);

} // namespace PlistNumbers
