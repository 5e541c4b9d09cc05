// SPDX-License-Identifier: MIT
// What is printed on a keycap: characters, words, arrows. Main thread only (painting).
#pragma once

#include "keys/keygeometry.h"

#include <QFont>

class QColor;
class QPainter;

struct KeyLegend
{
    KeyLook look = KeyLook::blank;
    QLatin1StringView legend;
    QLatin1StringView upperLegend;
};

/// Paints `legend` onto a keycap's face; `unit` is the length of one key unit in the same measure. What would not fit
/// is narrowed, and then made smaller.
void paintKeyLegend(QPainter &painter, const QRectF &face, qreal unit, const KeyLegend &legend, const QColor &color);

/// The font of the picture: the program's, in the nearest of the weights that its family has.
[[nodiscard]] QFont keyLegendFont(int pixelSize, QFont::Weight weight);
