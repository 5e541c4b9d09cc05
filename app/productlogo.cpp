// SPDX-License-Identifier: MIT
#include "app/productlogo.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

QPixmap productLogo(int size, qreal devicePixelRatio)
{
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 64.0, size / 64.0);

    QLinearGradient cap(0, 2, 0, 62);
    cap.setColorAt(0, QColor(0x3a, 0x86, 0xc8));
    cap.setColorAt(1, QColor(0x1c, 0x4f, 0x86));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x12, 0x33, 0x57));
    painter.drawRoundedRect(QRectF(2, 4, 60, 58), 13, 13);
    painter.setBrush(cap);
    painter.drawRoundedRect(QRectF(2, 2, 60, 54), 13, 13);

    QPainterPath feather(QPointF(20, 46));
    feather.cubicTo(18, 26, 32, 12, 50, 9);
    feather.cubicTo(48, 26, 40, 38, 24, 40);
    feather.closeSubpath();
    painter.setBrush(Qt::white);
    painter.drawPath(feather);
    QPainterPath shaft(QPointF(15, 50));
    shaft.cubicTo(22, 38, 32, 26, 44, 15);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0x1c, 0x4f, 0x86), 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(shaft);
    painter.setPen(QPen(Qt::white, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(14.5, 50.5), QPointF(20, 43));
    return pixmap;
}
