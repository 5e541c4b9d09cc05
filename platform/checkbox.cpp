// SPDX-License-Identifier: MIT
#include "platform/checkbox.h"

#include <QPainter>
#include <QStyleOptionButton>

void CheckBox::paintEvent(QPaintEvent *event)
{
    QCheckBox::paintEvent(event);
    constexpr int outlineAlpha = 170;
    constexpr qreal radius = 2;
    QColor outline = palette().color(QPalette::WindowText);
    if (!isEnabled() || outline.lightness() < palette().color(QPalette::Window).lightness())
        return;
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRectF box = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
    outline.setAlpha(outlineAlpha);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(outline);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}
