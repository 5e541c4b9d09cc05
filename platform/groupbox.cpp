// SPDX-License-Identifier: MIT
#include "platform/groupbox.h"

#include "platform/lowbands.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyleOptionGroupBox>

void GroupBox::paintEvent(QPaintEvent *event)
{
    constexpr int distance = 3; // from the frame to the contents
    constexpr int frameAlpha = 45;
    constexpr qreal radius = 3;
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    const auto place = [&](QStyle::SubControl part) {
        return style()->subControlRect(QStyle::CC_GroupBox, &option, part, this);
    };
    QPainter painter(this);
    style()->drawItemText(&painter, place(QStyle::SC_GroupBoxLabel), Qt::AlignCenter | Qt::TextShowMnemonic, palette(),
                          isEnabled(), title(), QPalette::WindowText);
    QColor frame = palette().color(QPalette::WindowText);
    frame.setAlpha(frameAlpha);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(frame);
    const QRect outline = place(QStyle::SC_GroupBoxContents).adjusted(-distance, -distance, distance, distance);
    constexpr int spansPerLine = 2;
    // At some scales the outline reaches beyond its rectangle.
    const QRect drawn = outline.adjusted(-1, -1, 1, 1) & event->rect();
    paintInLowBands(painter, drawn, spansPerLine, [&painter, outline] {
        painter.drawRoundedRect(QRectF(outline).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    });
}
