// SPDX-License-Identifier: MIT
// Splits areas into strips that Qt paints without its thread pool. Any thread.
#pragma once

#include <QList>
#include <QRect>

#include <functional>

class QPainter;

/// Cuts `area`, from top to bottom, into strips that Qt paints without its thread pool. Qt hands blended or antialiased
/// drawing to the pool from about a hundred spans (runs of pixels in a line) on. Waiting for the pool takes longer than
/// painting; it takes most of the time for a frame around a window. `spansPerLine` is the number of spans in each line
/// of pixels, for all shapes of one call together.
[[nodiscard]] QList<QRect> lowBands(const QRect &area, qreal spansPerLine);

/// Calls `paint` for each strip of `area`, with the painter clipped to the strip, and removes the clip afterwards.
/// `area` is in logical pixels; `spansPerLine` refers to a line of device pixels.
void paintInLowBands(QPainter &painter, const QRect &area, qreal spansPerLine, const std::function<void()> &paint);
