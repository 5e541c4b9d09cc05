// SPDX-License-Identifier: MIT
// The texts that a window paints, with their places: independent of the controls that paint them. Main thread only.
#pragma once

#include <QList>
#include <QRectF>
#include <QString>

class QWidget;

struct PaintedText
{
    QString text; ///< of one line; may be shortened with an ellipsis
    QRectF place; ///< in the coordinates of the window
};

/// Paints `window` on a device that records the texts. Omits texts that controls keep as pictures.
[[nodiscard]] QList<PaintedText> paintedTexts(QWidget *window);
