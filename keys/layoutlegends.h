// SPDX-License-Identifier: MIT
// The legends of the keys in the user's keyboard layout. No state; main thread.
#pragma once

#include <QLatin1StringView>
#include <QString>

class Keymap;
struct KeyShape;

namespace LayoutLegends {

struct Legend
{
    QString lower;
    QString upper; ///< empty for a letter, which has one legend, and for keys without characters

    bool operator==(const Legend &) const = default;
};

/// Returns the legend of the key `shape` in `keymap`. It is the printed one for a key without characters and without a
/// keymap.
[[nodiscard]] Legend legendOf(const KeyShape &shape, const Keymap &keymap);

} // namespace LayoutLegends
