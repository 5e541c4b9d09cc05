// SPDX-License-Identifier: MIT
// The outline of a check box or radio button that is seen on a dark desktop too. No state; main thread only.
#pragma once

#include <QColor>
#include <QRect>

class QPainter;
class QWidget;

namespace IndicatorOutline {

enum class Shape { box, circle };

/// The colour of an outline beside texts of the colour `text`.
[[nodiscard]] QColor colorBeside(QColor text);

/// Draws it around `indicator`, which the style has drawn on `control` already. Where the desktop is dark, styles draw
/// the outline darker still, so that what is not ticked can hardly be seen; elsewhere, and around a disabled control,
/// nothing is drawn.
void drawOnDark(QPainter &painter, const QWidget *control, const QRect &indicator, Shape shape);

} // namespace IndicatorOutline
