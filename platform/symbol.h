// SPDX-License-Identifier: MIT
// The window's own icons: line drawings in the colours of the palette, sharp at every size. Main thread only.
#pragma once

#include <QIcon>

enum class Symbol {
    keyboard,
    profiles,
    macro,
    light,
    tick, ///< a tick in a circle: nothing needs to be done
    page, ///< a speech bubble
    feed, ///< waves from a dot
    club, ///< two people
    help,
    undo,    ///< an arrow back
    history, ///< a clock
    add,
    remove,
    zoomOut,    ///< a minus sign; the plus sign is `add`
    fit,        ///< an arrow to both sides
    noKeyboard, ///< a keyboard with a stroke through it
    noService,  ///< an arrow that goes round
};

namespace Symbols {

/// Returns the drawing of `symbol`. It follows the program's palette.
[[nodiscard]] QIcon icon(Symbol symbol);

/// Returns the desktop's icon `themeName` (a standard name of freedesktop.org), or the drawing of `symbol` if the icon
/// theme has none. The theme is loaded when the icon is first painted.
[[nodiscard]] QIcon icon(Symbol symbol, const QString &themeName);

} // namespace Symbols
