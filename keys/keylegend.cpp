// SPDX-License-Identifier: MIT
#include "keys/keylegend.h"

#include <QCache>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <QVarLengthArray>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal inset = 0.085;    // of the legend in the face, in key units
constexpr qreal narrowest = 0.82; // of text before it becomes smaller

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

// The measures of a text in a font, in pixels. `ink` is the area of its strokes, relative to the start of its baseline.
struct Extent
{
    qreal width = 0;
    QRectF ink;
};

// Returns the measures of `text`, which is measured once per font instead of at every painting.
Extent measured(const QFontMetricsF &metrics, const QFont &font, const QString &text)
{
    constexpr int rememberedTexts = 1000;
    static QCache<QString, Extent> extents(rememberedTexts);
    const QString key =
        QString(QChar(font.pixelSize())) + QChar(static_cast<int>(font.weight())) + font.family() + u' ' + text;
    if (const Extent *known = extents.object(key))
        return *known;
    const Extent extent{metrics.horizontalAdvance(text), metrics.tightBoundingRect(text)};
    extents.insert(key, new Extent(extent));
    return extent;
}

// Returns a font of `pixels` height. If `text` does not fit into `width`, it is first narrowed and then made
// smaller: keys of one size then have words of one size. It is scaled, because each stretch and size would be a
// separate font to load.
Lettering letteringFor(const QString &text, qreal pixels, qreal width, QFont::Weight weight)
{
    constexpr int smallestPixels = 6;
    const QFont font = keyLegendFont(std::max(smallestPixels, qRound(pixels)), weight);
    Lettering lettering{.font = font, .metrics = QFontMetricsF(font)};
    if (text.size() <= 1)
        return lettering; // fits on every key
    const qreal share = std::min<qreal>(1, width / std::max<qreal>(1, measured(lettering.metrics, font, text).width));
    lettering.horizontalScale = share;
    lettering.verticalScale = std::min<qreal>(1, share / narrowest);
    return lettering;
}

// A text with its upper left corner.
struct Line
{
    QString text;
    QPointF corner;
};

struct Lines
{
    Lettering lettering;
    QVarLengthArray<Line, 2> lines;
};

void drawLines(QPainter &painter, const Lines &print)
{
    const Lettering &lettering = print.lettering;
    painter.setFont(lettering.font);
    const QPointF baseline(0, lettering.metrics.ascent());
    for (const Line &line : print.lines) {
        if (lettering.horizontalScale == 1) {
            painter.drawText(line.corner + baseline, line.text);
            continue;
        }
        painter.save();
        painter.translate(line.corner);
        painter.scale(lettering.horizontalScale, lettering.verticalScale);
        painter.drawText(baseline, line.text);
        painter.restore();
    }
}

// Makes the lines that reach into `mark`, and those of the same print, as narrow as keeps them apart from it.
void keepClearOf(const QRectF &mark, Lines &print)
{
    constexpr qreal clearance = 1; // pixel: the mark is painted on whole ones
    if (mark.isNull())
        return;
    Lettering &lettering = print.lettering;
    const QTransform scale = QTransform::fromScale(lettering.horizontalScale, lettering.verticalScale);
    qreal share = 1;
    for (const Line &line : print.lines) {
        const QRectF ink =
            measured(lettering.metrics, lettering.font, line.text).ink.translated(0, lettering.metrics.ascent());
        const QRectF place = scale.mapRect(ink).translated(line.corner).adjusted(0, 0, clearance, clearance);
        if (place.intersects(mark))
            share = std::min(share, (mark.left() - line.corner.x()) / (place.right() - line.corner.x()));
    }
    lettering.horizontalScale *= share;
    lettering.verticalScale *= std::min<qreal>(1, share / narrowest);
}

Lines wordLines(const QRectF &place, qreal unit, const KeyLegend &legend)
{
    return {letteringFor(legend.legend, unit * 0.228, place.width(), QFont::Medium),
            {{legend.legend, place.topLeft()}}};
}

Lines characterLines(const QRectF &place, qreal unit, const KeyLegend &legend)
{
    const QString &lower = legend.legend;
    if (legend.upperLegend.isEmpty())
        return {letteringFor(lower, unit * 0.33, place.width(), QFont::Medium),
                {{lower, place.topLeft() - QPointF(0, unit * 0.02)}}};
    const Lettering lettering = letteringFor(lower, unit * 0.27, place.width(), QFont::Medium);
    const qreal half = place.height() / 2;
    const qreal spare = (half - lettering.metrics.height()) / 2; // centred in its half
    return {lettering,
            {{legend.upperLegend, place.topLeft() + QPointF(0, spare - unit * 0.015)},
             {lower, place.topLeft() + QPointF(0, half + spare + unit * 0.005)}}};
}

// As high as two characters on one key: each size is a separate font to load.
Lines nameLines(const QRectF &place, qreal unit, const KeyLegend &legend)
{
    return {letteringFor(legend.legend, unit * 0.27, place.width(), QFont::DemiBold),
            {{legend.legend, place.topLeft()}}};
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

void paintKeyLegend(QPainter &painter, const QRectF &face, qreal unit, const KeyLegend &legend, const QColor &color,
                    const QRectF &mark)
{
    const qreal margin = unit * inset;
    const QRectF place = face.adjusted(margin, margin * 0.7, -margin * 0.35, -margin * 0.6);
    painter.setPen(color);
    const auto paintLines = [&painter, &mark](Lines lines) {
        keepClearOf(mark, lines);
        drawLines(painter, lines);
    };
    switch (legend.look) {
    case KeyLook::letter: paintLines(characterLines(place, unit, legend)); break;
    case KeyLook::word: paintLines(wordLines(place, unit, legend)); break;
    case KeyLook::function:
    case KeyLook::extra: paintLines(nameLines(place, unit, legend)); break;
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
