// SPDX-License-Identifier: MIT
// An outline that keeps check boxes and radio buttons visible on a dark desktop. No state; main thread only.
#pragma once

#include <QColor>
#include <QRect>

class QPainter;
class QWidget;

namespace IndicatorOutline {

enum class Shape { box, circle };

/// The colour of an outline next to text of the colour `text`.
[[nodiscard]] QColor colorBeside(QColor text);

/// Draws the outline around `indicator`, which the style has already drawn on `control`. On a dark desktop, styles draw
/// their outline darker still and thus hide unticked indicators. On a light desktop, and around a disabled control,
/// nothing is drawn.
void drawOnDark(QPainter &painter, const QWidget *control, const QRect &indicator, Shape shape);

} // namespace IndicatorOutline
