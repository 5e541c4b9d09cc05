// SPDX-License-Identifier: MIT
#include "keys/keycap.h"

#include "keys/cachedpixmap.h"
#include "keys/keylegend.h"
#include "platform/contrast.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using Contrast::mixed;

namespace {

// Lengths in key units.
constexpr qreal gap = 0.045; // free space around a keycap
constexpr qreal baseRadius = 0.13;
constexpr qreal faceRadius = 0.11;
constexpr qreal sideSlope = 0.07; // from the foot of the cap to its face
constexpr qreal topSlope = 0.035;
constexpr qreal bottomSlope = 0.135;
constexpr qreal ringWidth = 0.075;
constexpr qreal minimumRingPixels = 2.5;
constexpr qreal innerRingWidth = 0.035;
constexpr qreal minimumInnerRingPixels = 1.25;

struct Colors
{
    QColor faceTop;
    QColor faceBottom;
    QColor foot;
    QColor edge;
    QColor legend;
    QColor accent;
};

struct CaseColors
{
    QColor top;
    QColor bottom;
    QColor edge;
};

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness() < 128;
}

Colors plainColors(bool dark, bool isExtra)
{
    if (dark && isExtra)
        return {0x515d70, 0x424d5e, 0x1b1f26, 0x6b7890, 0xf4f7fb, {}};
    if (dark)
        return {0x42464e, 0x363a41, 0x15171a, 0x595e68, 0xeef0f3, {}};
    if (isExtra)
        return {0x5a6576, 0x4a5465, 0x2b323d, 0x7a8699, 0xffffff, {}};
    return {0xffffff, 0xf1f2f5, 0xb4b9c3, 0xffffff, 0x23272e, {}};
}

CaseColors caseColors(bool dark, bool isEnabled)
{
    if (!isEnabled && dark)
        return {0x2b2d30, 0x2b2d30, 0x0e0f11};
    if (!isEnabled)
        return {0xe6e8eb, 0xe6e8eb, 0xa7adb7};
    if (dark)
        return {0x2a2d32, 0x1e2024, 0x0e0f11};
    return {0xdadde2, 0xc4c8d0, 0xa7adb7};
}

Colors colorsFor(const KeycapState &state, const QPalette &palette)
{
    const bool dark = isDark(palette);
    Colors colors = plainColors(dark, state.look == KeyLook::extra);
    colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
    if (state.mark == KeyMark::disabled) {
        // This key does nothing: its legend recedes, and its mark shows why.
        colors.legend = mixed(colors.legend, colors.faceBottom, 0.55);
    } else if (state.isHighlighted) {
        const qreal share = dark ? 0.42 : 0.3;
        colors.faceTop = mixed(colors.faceTop, colors.accent, share);
        colors.faceBottom = mixed(colors.faceBottom, colors.accent, share);
        colors.foot = mixed(colors.foot, colors.accent, 0.45);
    }
    if (state.isFound) {
        colors.faceTop = 0xfff2bf;
        colors.faceBottom = 0xffeca3;
        colors.foot = 0x8f5f00;
        colors.edge = 0xfff6d6;
    }
    if (state.isHovered || state.isSelected) {
        const QColor light = dark ? QColor(0x9aa3b2) : QColor(0xffffff);
        colors.faceTop = mixed(colors.faceTop, light, 0.16);
        colors.faceBottom = mixed(colors.faceBottom, light, 0.16);
    }
    if (!state.isEnabled) {
        const QColor away = dark ? QColor(0x26282c) : QColor(0xdfe1e5);
        colors.faceTop = colors.faceBottom = mixed(colors.faceTop, away, 0.85);
        colors.foot = mixed(colors.foot, away, 0.7);
        colors.edge = colors.faceTop;
        colors.legend = dark ? QColor(0x83868c) : QColor(0x7c818a);
        colors.accent = colors.legend;
    }
    colors.legend = Contrast::readable(colors.legend, {colors.faceTop, colors.faceBottom}, Contrast::ofText);
    return colors;
}

QRectF footIn(const QRectF &place, qreal unit)
{
    return place.adjusted(gap * unit, gap * unit, -gap * unit, -gap * unit);
}

QRectF restingFace(const QRectF &foot, qreal unit)
{
    return foot.adjusted(sideSlope * unit, topSlope * unit, -sideSlope * unit, -bottomSlope * unit);
}

// Paints a key that cannot have an assignment: no cap to press, only a dashed outline.
void paintFixedKey(QPainter &painter, const QRectF &foot, qreal unit, const KeycapState &state, const QPalette &palette)
{
    const bool dark = isDark(palette);
    const CaseColors around = caseColors(dark, state.isEnabled);
    const QColor line = dark ? QColor(0x7f858f) : QColor(0x7c828d);
    const QColor ground = mixed(mixed(around.top, around.bottom, 0.5), line, 0.08);
    const QRectF outline = foot.adjusted(1, 1, -1, -1);
    const QColor dashes = state.isEnabled
                              ? Contrast::readable(line, {around.top, around.bottom, ground}, Contrast::ofShapes)
                              : mixed(line, ground, 0.45);
    painter.setBrush(ground);
    painter.setPen(QPen(dashes, std::max(1.0, unit * 0.025), Qt::DashLine));
    painter.drawRoundedRect(outline, unit * baseRadius, unit * baseRadius);
    paintKeyLegend(painter, restingFace(foot, unit), unit, {state.look, state.legend, state.upperLegend},
                   Contrast::readable(line, {ground}, Contrast::ofText));
}

void paintFrame(QPainter &painter, const QRectF &place, qreal distance, qreal width, qreal radius, const QColor &color)
{
    const qreal inset = distance + width / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(place.adjusted(inset, inset, -inset, -inset), radius, radius);
}

// The frame of a key that the search has found is dark in both palettes, as the face is light.
qreal foundFrameWidth(qreal unit)
{
    return std::max(1.5, unit * 0.05);
}

void paintFoundFrame(QPainter &painter, const QRectF &face, qreal unit, const Colors &colors)
{
    const QColor frame = Contrast::readable(colors.foot, {colors.faceTop, colors.faceBottom}, Contrast::ofShapes);
    paintFrame(painter, face, 0, foundFrameWidth(unit), unit * faceRadius, frame);
}

// The ring of the selected key has two tones, a dark and a light one. One of them differs clearly from any cap and from
// any colour of the key lighting around it.
void paintRing(QPainter &painter, const QRectF &place, qreal unit, const Colors &colors, bool isDark, bool isEnabled)
{
    constexpr qreal dividedContrast = 9.5; // one of two tones this far apart has a contrast of 3 with any colour
    const CaseColors around = caseColors(isDark, isEnabled);
    QColor outer = isDark ? colors.accent.lighter(160) : colors.accent.darker(170);
    QColor inner = isDark ? QColor(0x0a0b0d) : QColor(Qt::white);
    if (isEnabled) {
        outer = Contrast::readable(outer, {inner}, dividedContrast);
    } else {
        outer = Contrast::readable(colors.accent, {around.top, colors.faceTop, colors.foot}, Contrast::ofShapes);
        inner = outer;
    }
    const qreal width = std::max(minimumRingPixels, unit * ringWidth);
    const qreal innerWidth = std::max(minimumInnerRingPixels, unit * innerRingWidth);
    const qreal radius = unit * (baseRadius + gap * 0.6);
    paintFrame(painter, place, width, innerWidth, radius * 0.8, inner);
    paintFrame(painter, place, 0, width, radius, outer);
}

// A cap without its legend and marks, which many keys share.
struct Body
{
    QSizeF size;
    qreal unit;
    Colors colors;
    bool isDark;
    bool hasShadow;
    bool isRaised;
    bool isDown;
};

QRectF faceOn(const QRectF &foot, const Body &body)
{
    const QRectF face = restingFace(foot, body.unit);
    if (body.isDown)
        return face.translated(0, body.unit * 0.05);
    return body.isRaised ? face.translated(0, -body.unit * 0.015) : face;
}

// Returns a rounded rectangle shaded from `top` to `bottom`, in a layer of its own. The colour is laid over a plain
// shape. Qt would give an antialiased shape with a gradient to a thread pool, and waiting for it takes longer than
// painting.
QPixmap shadedLayer(const QSizeF &size, qreal devicePixelRatio, const QRectF &shape, qreal radius, const QColor &top,
                    const QColor &bottom)
{
    QPixmap layer = transparentPixmap(size, devicePixelRatio);
    QPainter painter(&layer);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(top);
    painter.drawRoundedRect(shape, radius, radius);
    if (top == bottom)
        return layer;
    QLinearGradient shade(shape.topLeft(), shape.bottomLeft());
    shade.setColorAt(0, top);
    shade.setColorAt(1, bottom);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(shape.toAlignedRect(), shade);
    return layer;
}

void paintBody(QPainter &painter, const Body &body)
{
    const qreal unit = body.unit;
    const qreal ratio = painter.device()->devicePixelRatio();
    const Colors &colors = body.colors;
    const QRectF foot = footIn(QRectF(QPointF(), body.size), unit);
    painter.setRenderHint(QPainter::Antialiasing);
    if (body.hasShadow) {
        painter.setCompositionMode(
            QPainter::CompositionMode_Source); // empty ground; blending would use the thread pool
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, body.isDark ? 110 : 45));
        painter.drawRoundedRect(foot.translated(0, unit * (body.isRaised ? 0.045 : 0.03)), unit * baseRadius,
                                unit * baseRadius);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    painter.drawPixmap(QPointF(), shadedLayer(body.size, ratio, foot, unit * baseRadius,
                                              mixed(colors.foot, colors.faceTop, 0.35), colors.foot));
    const QRectF face = faceOn(foot, body);
    painter.drawPixmap(QPointF(),
                       shadedLayer(body.size, ratio, face, unit * faceRadius, colors.faceBottom, colors.faceTop));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.edge, std::max(0.75, unit * 0.015)));
    painter.drawRoundedRect(face, unit * faceRadius, unit * faceRadius);
}

QPixmap bodyPixmap(const Body &body, qreal devicePixelRatio)
{
    const Colors &colors = body.colors;
    const auto thousandths = [](qreal length) { return quint32(qRound(length * 1000)); };
    const QString key = pixmapKey(
        "keycap"_L1, {thousandths(body.size.width()), thousandths(body.size.height()), thousandths(body.unit),
                      thousandths(devicePixelRatio), colors.faceTop.rgba(), colors.faceBottom.rgba(),
                      colors.foot.rgba(), colors.edge.rgba(), body.isDark, body.hasShadow, body.isRaised, body.isDown});
    return cachedPixmap(key, body.size, devicePixelRatio, [&body](QPainter &painter) { paintBody(painter, body); });
}

} // namespace

QRectF keycapFace(const QRectF &place, qreal unit)
{
    return restingFace(footIn(place, unit), unit);
}

void paintKeycap(QPainter &painter, const QRectF &place, qreal unit, const KeycapState &state, const QPalette &palette)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF foot = footIn(place, unit);
    if (!state.isSelectable) {
        paintFixedKey(painter, foot, unit, state, palette);
        painter.restore();
        return;
    }
    const Colors colors = colorsFor(state, palette);
    const Body body{.size = place.size(),
                    .unit = unit,
                    .colors = colors,
                    .isDark = isDark(palette),
                    .hasShadow = state.isEnabled,
                    .isRaised = state.isSelected && state.isEnabled,
                    .isDown = state.isDown};
    painter.drawPixmap(place.topLeft(), bodyPixmap(body, painter.device()->devicePixelRatio()));

    const QRectF face = faceOn(foot, body);
    const QRectF mark = state.mark == KeyMark::none ? QRectF() : keyMarkPlace(face, unit);
    paintKeyLegend(painter, face, unit, {state.look, state.legend, state.upperLegend}, colors.legend, mark);
    paintKeyMark(painter, mark, state.mark, palette, state.isEnabled);
    if (state.isFound && state.isEnabled)
        paintFoundFrame(painter, face, unit, colors);
    if (state.isSelected)
        paintRing(painter, place, unit, colors, body.isDark, state.isEnabled);
    if (state.hasFocus && state.isEnabled) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colors.legend, 1, Qt::DotLine));
        // On the cap, not on the frame of a found key; on whole pixels, because a thin blurred line is too faint.
        const qreal inset = 1 + (state.isFound ? foundFrameWidth(unit) : 0);
        const QRectF frame(face.adjusted(inset, inset, -inset, -inset).toRect());
        painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), unit * faceRadius, unit * faceRadius);
    }
    painter.restore();
}

void paintWordmark(QPainter &painter, const QRectF &place, qreal unit, const QString &text, const QPalette &palette,
                   bool isEnabled)
{
    painter.save();
    // At the window's initial size this is as high as the window's title: each size is a separate font to load.
    QFont font = keyLegendFont(std::max(8, qRound(unit * 0.34)), QFont::DemiBold);
    font.setLetterSpacing(QFont::PercentageSpacing, 130);
    painter.setFont(font);
    const bool dark = isDark(palette);
    // The engraving has an edge that catches the light under the letters.
    painter.setPen(dark ? QColor(0x3a3e45) : QColor(0xe6e9ed));
    painter.drawText(place.translated(0, std::max(1.0, unit * 0.02)), Qt::AlignRight | Qt::AlignVCenter, text);
    const QColor letters = dark ? QColor(0x6b717c) : QColor(0x949ba7);
    painter.setPen(isEnabled ? letters : mixed(letters, dark ? QColor(0x2b2d30) : QColor(0xe6e8eb), 0.6));
    painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter, text);
    painter.restore();
}

void paintKeyboardCase(QPainter &painter, const QRectF &place, qreal unit, const QPalette &palette, bool isEnabled)
{
    painter.save();
    const auto [top, bottom, edgeColor] = caseColors(isDark(palette), isEnabled);
    const QRectF outline = place.adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = unit * 0.3;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edgeColor, 1));
    // The shade consists of plain bands between the rounded ends, for the reason given at shadedLayer(). One band for
    // each step of the colour is as smooth as a gradient.
    const QRect whole = place.toAlignedRect();
    const int firstBand = static_cast<int>(std::ceil(place.top() + radius));
    const int endOfBands = static_cast<int>(std::floor(place.bottom() - radius));
    painter.setBrush(top);
    painter.setClipRect(QRect(whole.left(), whole.top(), whole.width(), firstBand - whole.top()));
    painter.drawRoundedRect(outline, radius, radius);
    painter.setBrush(bottom);
    painter.setClipRect(QRect(whole.left(), firstBand, whole.width(), whole.bottom() + 1 - firstBand));
    painter.drawRoundedRect(outline, radius, radius);
    painter.setClipping(false);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const int bands = std::max(1, std::abs(top.red() - bottom.red()));
    const auto edge = [=](int band) { return firstBand + (endOfBands - firstBand) * band / bands; };
    const int left = static_cast<int>(std::ceil(place.left() + 1));
    const int right = static_cast<int>(std::floor(place.right() - 1));
    for (int band = 0; band < bands; ++band) {
        painter.fillRect(QRect(left, edge(band), right - left, edge(band + 1) - edge(band)),
                         mixed(top, bottom, band / qreal(bands)));
    }
    painter.restore();
}
