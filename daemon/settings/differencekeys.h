// SPDX-License-Identifier: MIT
// The keys inside a difference (documentdifference.h). They are on the disk, in many copies: short, and never renamed.
#pragma once

#include <QLatin1StringView>

namespace DifferenceKeys {

using Key = QLatin1StringView;

inline constexpr Key oldValue{"o"};
inline constexpr Key newValue{"n"};
inline constexpr Key dictionary{"d"};
inline constexpr Key steps{"l"};
inline constexpr Key indexBefore{"i"}; // in a step, like the next two
inline constexpr Key indexAfter{"j"};
inline constexpr Key changed{"c"};

} // namespace DifferenceKeys
