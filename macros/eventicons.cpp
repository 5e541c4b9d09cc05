// SPDX-License-Identifier: MIT
#include "macros/eventicons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <array>

namespace {

constexpr int iconSize = 16;
constexpr QColor warningColor(0xd6, 0x3a, 0x3a);

/// Draws an arrow: filled and pointing down for a press, hollow and pointing up for a release.
void drawArrow(QPainter &painter, const QColor &color, bool isPress)
{
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(isPress ? QBrush(color) : QBrush(Qt::NoBrush));
    if (!isPress) {
        painter.translate(0, iconSize);
        painter.scale(1, -1);
    }
    QPainterPath arrow(QPointF(6, 2));
    for (const QPointF point :
         {QPointF(10, 2), QPointF(10, 8), QPointF(13, 8), QPointF(8, 14), QPointF(3, 8), QPointF(6, 8)})
        arrow.lineTo(point);
    arrow.closeSubpath();
    painter.drawPath(arrow);
}

void drawClock(QPainter &painter, QColor color)
{
    color.setAlphaF(0.65f); // fainter than the events between the pauses
    painter.setPen(QPen(color, 1.3, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(QPointF(8, 8), 6, 6);
    painter.drawLine(QPointF(8, 8), QPointF(8, 4.5));
    painter.drawLine(QPointF(8, 8), QPointF(10.5, 9.5));
}

/// Draws an exclamation mark at the right edge.
void drawWarning(QPainter &painter, const QColor &color)
{
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(14.5, 3), QPointF(14.5, 9));
    painter.drawPoint(QPointF(14.5, 13));
}

QPixmap drawn(EventLineKind kind, const QColor &color, int dotsPerUnit, bool isUnpaired)
{
    QPixmap pixmap(QSize(iconSize, iconSize) * dotsPerUnit);
    pixmap.setDevicePixelRatio(dotsPerUnit);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isUnpaired) {
        drawWarning(painter, color);
        painter.translate(-2, 0);
    }
    if (kind == EventLineKind::delay)
        drawClock(painter, color);
    else
        drawArrow(painter, color, kind == EventLineKind::press);
    return pixmap;
}

} // namespace

QIcon EventIcons::recordIcon(bool isStop)
{
    QIcon icon;
    for (const int dotsPerUnit : {1, 2}) {
        for (const auto &[mode, color] :
             {std::pair{QIcon::Normal, warningColor}, std::pair{QIcon::Disabled, QColor(0x90, 0x90, 0x90)}}) {
            QPixmap pixmap(QSize(iconSize, iconSize) * dotsPerUnit);
            pixmap.setDevicePixelRatio(dotsPerUnit);
            pixmap.fill(Qt::transparent);
            QPainter painter(&pixmap);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(color);
            isStop ? painter.drawRect(QRectF(3.5, 3.5, 9, 9)) : painter.drawEllipse(QPointF(8, 8), 5, 5);
            painter.end();
            icon.addPixmap(pixmap, mode);
        }
    }
    return icon;
}

QIcon EventIcons::icon(EventLineKind kind, const QPalette &palette)
{
    return icon(kind, palette, false);
}

QIcon EventIcons::unpairedIcon(EventLineKind kind, const QPalette &palette)
{
    return icon(kind, palette, true);
}

QIcon EventIcons::icon(EventLineKind kind, const QPalette &palette, bool isUnpaired)
{
    if (mPaletteKey != palette.cacheKey()) {
        mIcons.clear();
        mPaletteKey = palette.cacheKey();
    }
    QIcon &icon = mIcons[{kind, isUnpaired}];
    if (icon.isNull()) {
        struct Look
        {
            QIcon::Mode mode;
            QColor color;
        };
        const std::array looks{
            Look{QIcon::Normal, isUnpaired ? warningColor : palette.color(QPalette::Active, QPalette::Text)},
            Look{QIcon::Disabled, palette.color(QPalette::Disabled, QPalette::Text)},
            Look{QIcon::Selected, palette.color(QPalette::Active, QPalette::HighlightedText)},
        };
        for (const Look &look : looks) {
            for (const int dotsPerUnit : {1, 2})
                icon.addPixmap(drawn(kind, look.color, dotsPerUnit, isUnpaired), look.mode);
        }
    }
    return icon;
}
