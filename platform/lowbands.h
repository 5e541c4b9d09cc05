// SPDX-License-Identifier: MIT
// Areas that are painted in strips, so that Qt paints them at once. Any thread.
#pragma once

#include <QList>
#include <QRect>

#include <functional>

class QPainter;

/// Qt hands what is blended or antialiased to a pool of threads as soon as it has about a hundred spans (runs of pixels
/// in a line), and waiting for them takes longer than painting: of a frame around a window, most of the time. This cuts
/// `area` into strips from top to bottom that stay below that, when what is painted has `spansPerLine` spans in each
/// line of pixels, all shapes of one call together.
[[nodiscard]] QList<QRect> lowBands(const QRect &area, qreal spansPerLine);

/// Calls `paint` for each of these strips of `area`, with the painter clipped to it, and leaves no clip. `area` is in
/// logical pixels, `spansPerLine` is for a line of the device's.
void paintInLowBands(QPainter &painter, const QRect &area, qreal spansPerLine, const std::function<void()> &paint);
