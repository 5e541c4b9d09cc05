// SPDX-License-Identifier: MIT
// Paints a keycap, for the keyboard picture and for the explanation under it. Main thread.
#pragma once

#include "keys/keygeometry.h"
#include "keys/keymark.h"

#include <QString>

class QPainter;
class QPalette;

/// The visible properties of one key.
struct KeycapState
{
    KeyLook look = KeyLook::blank;
    QString legend = {};
    QString upperLegend = {};
    KeyMark mark = KeyMark::none;
    bool isSelectable = true;
    bool isEnabled = true;
    bool isHighlighted = false; ///< shown as mapped
    bool isSelected = false;
    bool isDown = false;
    bool isHovered = false;
    bool hasFocus = false;
    bool isFound = false; ///< fits the search
};

/// Paints the keycap into `place`, which begins at a whole pixel. `unit` is the length of one key unit in the same
/// measure. QPixmapCache keeps the caps without their legends: most keys have the same size and look.
void paintKeycap(QPainter &painter, const QRectF &place, qreal unit, const KeycapState &state, const QPalette &palette);

/// Returns the face of the keycap that fills `place`: the part with its legend and mark. A pressed or selected cap has
/// its face a little lower or higher.
[[nodiscard]] QRectF keycapFace(const QRectF &place, qreal unit);

/// Paints the keyboard's case behind the keys.
void paintKeyboardCase(QPainter &painter, const QRectF &place, qreal unit, const QPalette &palette, bool isEnabled);

/// Paints `text` as if engraved into the case, at the right of `place`.
void paintWordmark(QPainter &painter, const QRectF &place, qreal unit, const QString &text, const QPalette &palette,
                   bool isEnabled);
