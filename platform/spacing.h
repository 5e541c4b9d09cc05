// SPDX-License-Identifier: MIT
// The grid of the window: every distance between controls is one of these, in pixels. Constant data, any thread.
#pragma once

namespace Spacing {

inline constexpr int tight = 4;     ///< between the lines of one text, and parts that touch
inline constexpr int normal = 8;    ///< between controls of one group
inline constexpr int separate = 16; ///< between groups, and around the content of a page, a sheet or a card

} // namespace Spacing
