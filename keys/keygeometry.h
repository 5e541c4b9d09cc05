// SPDX-License-Identifier: MIT
// The place and the print of each of the 124 keys in the keyboard picture. Constant data, any thread.
#pragma once

#include <QLatin1StringView>
#include <QRectF>
#include <QSizeF>

#include <span>

/// The kind of print on a keycap.
enum class KeyLook {
    letter,   ///< one or two large characters
    word,     ///< small words on one line
    function, ///< a function key's name
    extra,    ///< the accented M and T keys
    blank,    ///< nothing
    arrowUp,
    arrowDown,
    arrowLeft,
    arrowRight,
    eject,
};

struct KeyShape
{
    QLatin1StringView outlet;
    QRectF place;                  ///< in key units: 1 is the pitch of the letter keys; origin top left
    QLatin1StringView legend;      ///< empty for blank keys and pictures
    QLatin1StringView upperLegend; ///< the character with Shift, above the legend; empty for words
    KeyLook look;
};

namespace KeyGeometry {

/// Returns all keys, row by row from the top. Within a block, the keys of a row run from the left.
[[nodiscard]] std::span<const KeyShape> shapes();

/// Returns the shape of the button `outlet`; null if no button has this name.
[[nodiscard]] const KeyShape *shapeForOutlet(QLatin1StringView outlet);

/// Size of the whole picture in key units.
inline constexpr QSizeF size{23.85, 7.45};

} // namespace KeyGeometry
