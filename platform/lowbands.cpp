// SPDX-License-Identifier: MIT
#include "platform/lowbands.h"

#include <QPaintDevice>
#include <QPainter>

#include <algorithm>

namespace {

constexpr qreal spansAtOnce = 80; // Qt uses its thread pool from 96 on

} // namespace

QList<QRect> lowBands(const QRect &area, qreal spansPerLine)
{
    const int lines = std::max(1, static_cast<int>(spansAtOnce / spansPerLine));
    QList<QRect> bands;
    for (int top = area.top(); top <= area.bottom(); top += lines)
        bands += QRect(area.left(), top, area.width(), std::min(lines, area.bottom() + 1 - top));
    return bands;
}

void paintInLowBands(QPainter &painter, const QRect &area, qreal spansPerLine, const std::function<void()> &paint)
{
    for (const QRect &band : lowBands(area, spansPerLine * painter.device()->devicePixelRatio())) {
        painter.setClipRect(QRectF(band));
        paint();
    }
    painter.setClipping(false);
}
