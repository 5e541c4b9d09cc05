// SPDX-License-Identifier: MIT
// Paints the print on a keycap: characters, words, arrows. Main thread only.
#pragma once

#include "keys/keygeometry.h"

#include <QFont>
#include <QRectF>
#include <QString>

class QColor;
class QPainter;

struct KeyLegend
{
    KeyLook look = KeyLook::blank;
    QString legend;
    QString upperLegend;
};

/// Paints `legend` onto a keycap's face; `unit` is the length of one key unit in the same measure. Text that does not
/// fit is first narrowed and then made smaller. The same applies to text that would reach into `mark`, the place of the
/// key's mark (null without one).
void paintKeyLegend(QPainter &painter, const QRectF &face, qreal unit, const KeyLegend &legend, const QColor &color,
                    const QRectF &mark = {});

/// Returns the font of the picture: the program's font, in the nearest of the weights that its family has.
[[nodiscard]] QFont keyLegendFont(int pixelSize, QFont::Weight weight);
