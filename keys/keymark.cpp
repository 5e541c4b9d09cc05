// SPDX-License-Identifier: MIT
#include "keys/keymark.h"

#include "keys/cachedpixmap.h"
#include "keys/keymapping.h"
#include "platform/contrast.h"
#include "platform/lowbands.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace {

constexpr qreal markSize = 0.33; // in key units
constexpr qreal minimumMarkPixels = 10;

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

QPainterPath dots()
{
    QPainterPath path;
    for (const qreal x : {-0.46, 0.0, 0.46})
        path.addEllipse(QPointF(x, 0), 0.17, 0.17);
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
    case KeyMark::singleKey: return {arrowRight(), false};
    case KeyMark::macro: return {triangle(), true};
    case KeyMark::profile: return {cards(), false};
    case KeyMark::launchProgram: return {arrowOut(), false};
    case KeyMark::disabled: return {cross(), false};
    case KeyMark::other: return {dots(), true};
    case KeyMark::none: break;
    }
    return {};
}

QColor discColor(KeyMark mark, const QPalette &palette, bool isEnabled)
{
    if (!isEnabled)
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    static const QColor disabledKey(0xc0, 0x2f, 0x36);
    if (mark == KeyMark::disabled)
        return disabledKey;
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight).darker(115);
    return Contrast::readable(accent, {Qt::white}, Contrast::ofShapes);
}

struct Disc
{
    KeyMark mark;
    qreal size;
    QColor color;
    QColor glyphColor;
    bool hasRim;
};

void paintDisc(QPainter &painter, const Disc &disc)
{
    painter.setRenderHint(QPainter::Antialiasing);
    // The rim keeps the disc apart from a key of the same colour.
    const qreal rim = disc.size * 0.07;
    painter.setPen(disc.hasRim ? QPen(QColor(255, 255, 255, 210), rim) : QPen(Qt::NoPen));
    painter.setBrush(disc.color);
    constexpr int spansPerLine = 12; // the disc's edges are shades
    const QRectF outline(rim / 2, rim / 2, disc.size - rim, disc.size - rim);
    paintInLowBands(painter, QRectF(0, 0, disc.size, disc.size).toAlignedRect(), spansPerLine,
                    [&painter, outline] { painter.drawEllipse(outline); });
    painter.translate(disc.size / 2, disc.size / 2);
    painter.scale(disc.size / 2, disc.size / 2);
    const Glyph glyph = glyphOf(disc.mark);
    painter.setPen(glyph.isFilled ? QPen(Qt::NoPen)
                                  : QPen(disc.glyphColor, 0.24, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(glyph.isFilled ? QBrush(disc.glyphColor) : QBrush(Qt::NoBrush));
    painter.drawPath(glyph.path);
}

} // namespace

KeyMark keyMarkForCommand(qint32 command)
{
    if (!KeyMappings::isKeyMapped(command))
        return KeyMark::none;
    switch (KeyMappings::checkPopUpAssignmentIndexForValue(command)) {
    case KeyMappings::singleKeyPosition: return KeyMark::singleKey;
    case KeyMappings::macroPosition: return KeyMark::macro;
    case KeyMappings::profilePosition: return KeyMark::profile;
    case KeyMappings::launchProgramPosition: return KeyMark::launchProgram;
    case KeyMappings::disablePosition: return KeyMark::disabled;
    default: return KeyMark::other;
    }
}

QRectF keyMarkPlace(const QRectF &face, qreal unit)
{
    const qreal size = std::max(minimumMarkPixels, unit * markSize);
    return {face.right() - size - unit * 0.035, face.bottom() - size - unit * 0.035, size, size};
}

void paintKeyMark(QPainter &painter, const QRectF &place, KeyMark mark, const QPalette &palette, bool isEnabled)
{
    if (mark == KeyMark::none)
        return;
    const qreal ratio = painter.device()->devicePixelRatio();
    const Disc disc{.mark = mark,
                    .size = place.width(),
                    .color = discColor(mark, palette, isEnabled),
                    .glyphColor = isEnabled ? QColor(Qt::white) : palette.color(QPalette::Disabled, QPalette::Window),
                    .hasRim = isEnabled};
    const auto thousandths = [](qreal length) { return quint32(qRound(length * 1000)); };
    const QString key =
        pixmapKey(QLatin1StringView("keymark"), {quint32(mark), thousandths(disc.size), thousandths(ratio),
                                                 disc.color.rgba(), disc.glyphColor.rgba(), disc.hasRim});
    const QPixmap pixmap =
        cachedPixmap(key, place.size(), ratio, [&disc](QPainter &discPainter) { paintDisc(discPainter, disc); });
    // On whole pixels of the device the disc stays crisp.
    const QPointF corner = (place.topLeft() * ratio).toPoint();
    painter.drawPixmap(corner / ratio, pixmap);
}
