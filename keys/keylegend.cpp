// SPDX-License-Identifier: MIT
#include "keys/keylegend.h"

#include <QCache>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal inset = 0.085; // of the legend in the face, in key units

struct Lettering
{
    QFont font;
    QFontMetricsF metrics;
    qreal horizontalScale = 1;
    qreal verticalScale = 1;
};

// Returns the nearest of the family's weights; of two equally near ones, the one away from the middle, as in style
// sheets. With another weight, the face that other texts have already loaded would be loaded again.
QFont::Weight nearestWeight(const QString &family, QFont::Weight wanted)
{
    static QHash<std::pair<QString, QFont::Weight>, QFont::Weight> known;
    const auto key = std::pair(family, wanted);
    if (const auto found = known.constFind(key); found != known.cend())
        return *found;
    int nearest = wanted;
    int smallestDistance = std::numeric_limits<int>::max();
    for (const QString &style : QFontDatabase::styles(family)) {
        const int weight = QFontDatabase::weight(family, style);
        const int distance = 2 * std::abs(weight - wanted) + ((weight > wanted) == (wanted > QFont::Medium) ? 0 : 1);
        if (weight > 0 && distance < smallestDistance) {
            smallestDistance = distance;
            nearest = weight;
        }
    }
    return known.insert(key, static_cast<QFont::Weight>(nearest)).value();
}

// Returns the width of `text`, which is measured once per font instead of at every painting.
qreal measuredWidth(const QFontMetricsF &metrics, const QFont &font, const QString &text)
{
    constexpr int rememberedWidths = 1000;
    static QCache<QString, qreal> widths(rememberedWidths);
    const QString key =
        QString(QChar(font.pixelSize())) + QChar(static_cast<int>(font.weight())) + font.family() + u' ' + text;
    if (const qreal *known = widths.object(key))
        return *known;
    const qreal width = metrics.horizontalAdvance(text);
    widths.insert(key, new qreal(width));
    return width;
}

// Returns a font of `pixels` height. If `longest` does not fit into `width`, it is first narrowed and then made
// smaller: keys of one size then have words of one size. It is scaled, because each stretch and size would be a
// separate font to load.
Lettering letteringFor(const QString &longest, qreal pixels, qreal width, QFont::Weight weight)
{
    constexpr int smallestPixels = 6;
    constexpr qreal narrowest = 0.82;
    const QFont font = keyLegendFont(std::max(smallestPixels, qRound(pixels)), weight);
    Lettering lettering{.font = font, .metrics = QFontMetricsF(font)};
    if (longest.size() <= 1)
        return lettering; // fits on every key
    const qreal share = std::min<qreal>(1, width / std::max<qreal>(1, measuredWidth(lettering.metrics, font, longest)));
    lettering.horizontalScale = share;
    lettering.verticalScale = std::min<qreal>(1, share / narrowest);
    return lettering;
}

// Draws `text` with its upper left corner at `corner`.
void drawLine(QPainter &painter, const QPointF &corner, const QString &text, const Lettering &lettering)
{
    painter.setFont(lettering.font);
    const QPointF baseline(0, lettering.metrics.ascent());
    if (lettering.horizontalScale == 1) {
        painter.drawText(corner + baseline, text);
        return;
    }
    painter.save();
    painter.translate(corner);
    painter.scale(lettering.horizontalScale, lettering.verticalScale);
    painter.drawText(baseline, text);
    painter.restore();
}

void paintWords(QPainter &painter, const QRectF &place, qreal unit, const KeyLegend &legend)
{
    const QString first(legend.legend), second(legend.upperLegend);
    const Lettering lettering =
        letteringFor(first.size() >= second.size() ? first : second, unit * 0.228, place.width(), QFont::Medium);
    drawLine(painter, place.topLeft(), first, lettering);
    if (!second.isEmpty()) {
        const QPointF lineFeed(0, lettering.metrics.lineSpacing() * lettering.verticalScale);
        drawLine(painter, place.topLeft() + lineFeed, second, lettering);
    }
}

void paintCharacters(QPainter &painter, const QRectF &place, qreal unit, const KeyLegend &legend)
{
    const QString lower(legend.legend);
    if (legend.upperLegend.isEmpty()) {
        const Lettering lettering = letteringFor(lower, unit * 0.33, place.width(), QFont::Medium);
        drawLine(painter, place.topLeft() - QPointF(0, unit * 0.02), lower, lettering);
        return;
    }
    const Lettering lettering = letteringFor(lower, unit * 0.27, place.width(), QFont::Medium);
    const qreal half = place.height() / 2;
    const qreal spare = (half - lettering.metrics.height()) / 2; // centred in its half
    drawLine(painter, place.topLeft() + QPointF(0, spare - unit * 0.015), QString(legend.upperLegend), lettering);
    drawLine(painter, place.topLeft() + QPointF(0, half + spare + unit * 0.005), lower, lettering);
}

void paintArrow(QPainter &painter, const QRectF &place, qreal unit, KeyLook look, const QColor &color)
{
    qreal angle = 0; // the path points up
    if (look == KeyLook::arrowRight)
        angle = 90;
    else if (look == KeyLook::arrowDown)
        angle = 180;
    else if (look == KeyLook::arrowLeft)
        angle = 270;
    const qreal size = unit * 0.14;
    painter.save();
    painter.translate(place.left() + size * 1.15, place.top() + size * 1.25);
    painter.rotate(angle);
    QPainterPath path(QPointF(0, size));
    path.lineTo(0, -size);
    path.moveTo(-size * 0.72, -size * 0.25);
    path.lineTo(0, -size);
    path.lineTo(size * 0.72, -size * 0.25);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, std::max(1.2, unit * 0.038), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    painter.restore();
}

void paintEject(QPainter &painter, const QRectF &place, qreal unit, const QColor &color)
{
    const qreal size = unit * 0.13;
    const QPointF center(place.left() + size * 1.2, place.top() + size * 1.15);
    QPainterPath path(center + QPointF(-size, size * 0.3));
    path.lineTo(center + QPointF(0, -size * 0.8));
    path.lineTo(center + QPointF(size, size * 0.3));
    path.closeSubpath();
    path.addRect(QRectF(center.x() - size, center.y() + size * 0.6, size * 2, size * 0.42));
    painter.fillPath(path, color);
}

} // namespace

void paintKeyLegend(QPainter &painter, const QRectF &face, qreal unit, const KeyLegend &legend, const QColor &color)
{
    const qreal margin = unit * inset;
    const QRectF place = face.adjusted(margin, margin * 0.7, -margin * 0.35, -margin * 0.6);
    painter.setPen(color);
    switch (legend.look) {
    case KeyLook::letter: paintCharacters(painter, place, unit, legend); break;
    case KeyLook::word: paintWords(painter, place, unit, legend); break;
    case KeyLook::function:
    case KeyLook::extra: {
        // As high as two characters on one key: each size is a separate font to load.
        const QString text(legend.legend);
        drawLine(painter, place.topLeft(), text, letteringFor(text, unit * 0.27, place.width(), QFont::DemiBold));
        break;
    }
    case KeyLook::blank: break;
    case KeyLook::eject: paintEject(painter, place, unit, color); break;
    default: paintArrow(painter, place, unit, legend.look, color);
    }
}

QFont keyLegendFont(int pixelSize, QFont::Weight weight)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(nearestWeight(font.family(), weight));
    return font;
}
