// SPDX-License-Identifier: MIT
#include "keys/keymark.h"

#include "keys/keymapping.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace {

// Glyphs are drawn in a square from (-1, -1) to (1, 1) inside the disc of radius 1.
QPainterPath arrowRight()
{
    QPainterPath path(QPointF(-0.55, 0));
    path.lineTo(0.5, 0);
    path.moveTo(0.1, -0.42);
    path.lineTo(0.52, 0);
    path.lineTo(0.1, 0.42);
    return path;
}

QPainterPath arrowOut()
{
    QPainterPath path(QPointF(-0.42, 0.42));
    path.lineTo(0.38, -0.38);
    path.moveTo(-0.18, -0.4);
    path.lineTo(0.4, -0.4);
    path.lineTo(0.4, 0.18);
    return path;
}

QPainterPath cross()
{
    QPainterPath path(QPointF(-0.4, -0.4));
    path.lineTo(0.4, 0.4);
    path.moveTo(0.4, -0.4);
    path.lineTo(-0.4, 0.4);
    return path;
}

QPainterPath triangle()
{
    QPainterPath path(QPointF(-0.32, -0.52));
    path.lineTo(0.58, 0);
    path.lineTo(-0.32, 0.52);
    path.closeSubpath();
    return path;
}

QPainterPath cards()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(-0.52, -0.14, 0.72, 0.6), 0.1, 0.1);
    path.moveTo(-0.2, -0.5);
    path.lineTo(0.52, -0.5);
    path.lineTo(0.52, 0.14);
    return path;
}

QPainterPath dot()
{
    QPainterPath path;
    path.addEllipse(QPointF(0, 0), 0.28, 0.28);
    return path;
}

struct Glyph
{
    QPainterPath path;
    bool isFilled;
};

Glyph glyphOf(KeyMark mark)
{
    switch (mark) {
    case KeyMark::singleKey:
        return {arrowRight(), false};
    case KeyMark::macro:
        return {triangle(), true};
    case KeyMark::profile:
        return {cards(), false};
    case KeyMark::launchProgram:
        return {arrowOut(), false};
    case KeyMark::disabled:
        return {cross(), false};
    case KeyMark::other:
        return {dot(), true};
    case KeyMark::none:
        break;
    }
    return {};
}

QColor discColor(KeyMark mark, const QPalette &palette, bool isEnabled)
{
    if (!isEnabled)
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    static const QColor disabledKey(0xc0, 0x2f, 0x36);
    return mark == KeyMark::disabled ? disabledKey : palette.color(QPalette::Active, QPalette::Highlight).darker(115);
}

} // namespace

KeyMark keyMarkForCommand(qint32 command)
{
    if (!KeyMappings::isKeyMapped(command))
        return KeyMark::none;
    switch (KeyMappings::checkPopUpAssignmentIndexForValue(command)) {
    case KeyMappings::singleKeyPosition:
        return KeyMark::singleKey;
    case KeyMappings::macroPosition:
        return KeyMark::macro;
    case KeyMappings::profilePosition:
        return KeyMark::profile;
    case KeyMappings::launchProgramPosition:
        return KeyMark::launchProgram;
    case KeyMappings::disablePosition:
        return KeyMark::disabled;
    default:
        return KeyMark::other;
    }
}

void paintKeyMark(QPainter &painter, const QRectF &place, KeyMark mark, const QPalette &palette, bool isEnabled)
{
    if (mark == KeyMark::none)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // The rim keeps the disc apart from a key of the same colour.
    const qreal rim = place.width() * 0.07;
    painter.setPen(isEnabled ? QPen(QColor(255, 255, 255, 210), rim) : QPen(Qt::NoPen));
    painter.setBrush(discColor(mark, palette, isEnabled));
    painter.drawEllipse(place.adjusted(rim / 2, rim / 2, -rim / 2, -rim / 2));
    painter.translate(place.center());
    painter.scale(place.width() / 2, place.height() / 2);
    const Glyph glyph = glyphOf(mark);
    const QColor glyphColor = isEnabled ? QColor(Qt::white) : palette.color(QPalette::Disabled, QPalette::Window);
    QPen pen(glyphColor, 0.24, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (glyph.isFilled)
        pen = Qt::NoPen;
    painter.setPen(pen);
    painter.setBrush(glyph.isFilled ? QBrush(glyphColor) : QBrush(Qt::NoBrush));
    painter.drawPath(glyph.path);
    painter.restore();
}
