// SPDX-License-Identifier: MIT
// Areas that are painted in strips, so that Qt paints them at once. Any thread.
#pragma once

#include <QList>
#include <QRect>

/// Qt hands what is blended or antialiased to a pool of threads as soon as it has about a hundred spans (runs of pixels
/// in a line), and waiting for them takes longer than painting: of a frame around a window, most of the time. This cuts
/// `area` into strips from top to bottom that stay below that, when what is painted has `spansPerLine` spans in each
/// line of pixels, all shapes of one call together. Clip to one strip after the other, or fill them one by one.
[[nodiscard]] QList<QRect> lowBands(const QRect &area, qreal spansPerLine);
