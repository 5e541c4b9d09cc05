// SPDX-License-Identifier: MIT
#include "platform/groupbox.h"

#include <QPainter>
#include <QStyleOptionGroupBox>

void GroupBox::paintEvent(QPaintEvent *)
{
    constexpr int distance = 3; // of the frame from the contents
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
    const QRectF contents = place(QStyle::SC_GroupBoxContents);
    painter.drawRoundedRect(contents.adjusted(-distance + 0.5, -distance + 0.5, distance - 0.5, distance - 0.5), radius,
                            radius);
}
