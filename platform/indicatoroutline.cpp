// SPDX-License-Identifier: MIT
#include "platform/indicatoroutline.h"

#include <QPainter>
#include <QWidget>

QColor IndicatorOutline::colorBeside(QColor text)
{
    constexpr int alpha = 170;
    text.setAlpha(alpha);
    return text;
}

void IndicatorOutline::drawOnDark(QPainter &painter, const QWidget *control, const QRect &indicator, Shape shape)
{
    constexpr qreal boxRadius = 2;
    const QPalette &palette = control->palette();
    const QColor text = palette.color(QPalette::WindowText);
    if (!control->isEnabled() || text.lightness() < palette.color(QPalette::Window).lightness())
        return;
    const QRectF line = QRectF(indicator).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = shape == Shape::circle ? line.width() / 2 : boxRadius;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colorBeside(text));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(line, radius, radius);
}
