// SPDX-License-Identifier: MIT
// The contrast between colours, and colours with enough of it. No state; any thread.
#pragma once

#include <QColor>

#include <initializer_list>

namespace Contrast {

// WCAG 2 asks for 4.5 for text (1.4.3) and 3 for everything else (1.4.11). Rounding to whole colour steps takes a
// little of it away.
inline constexpr qreal ofText = 4.7;
inline constexpr qreal ofShapes = 3.2;

/// Returns the contrast as WCAG 2 defines it: from 1 for two equal colours to 21 for black and white.
[[nodiscard]] qreal ratio(const QColor &one, const QColor &other);

/// Returns `color`, made lighter or darker until its contrast with each of `backgrounds` is at least `least`. If no
/// colour has that contrast with all of them, returns black or white, whichever has more.
[[nodiscard]] QColor readable(const QColor &color, std::initializer_list<QColor> backgrounds, qreal least);

/// Returns the colour between `a` and `b`; `shareOfB` is from 0 to 1.
[[nodiscard]] QColor mixed(const QColor &a, const QColor &b, qreal shareOfB);

} // namespace Contrast
