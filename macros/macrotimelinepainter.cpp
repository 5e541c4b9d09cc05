// SPDX-License-Identifier: MIT
#include "macros/macrotimelinepainter.h"

#include "platform/contrast.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int padding = 4;         // beside the names
constexpr int barGap = 3;          // above and below a bar
constexpr double narrowBar = 6;    // a bar that is not wider has no outline
constexpr double narrowestBar = 2; // for keys that are pressed and released at once
constexpr double radius = 3;

} // namespace

MacroTimelinePainter::MacroTimelinePainter(const MacroTimeline &timeline, const MacroTimelineLayout &layout,
                                           const QStringList &laneLabels, const Marks &marks)
    : mTimeline(timeline), mLayout(layout), mLaneLabels(laneLabels), mMarks(marks)
{
}

int MacroTimelinePainter::leastTickDistance(const QFontMetrics &metrics)
{
    return metrics.horizontalAdvance(QStringLiteral("00000.000 s"));
}

void MacroTimelinePainter::setColors(const QPalette &palette, QPalette::ColorGroup group)
{
    mGround = palette.color(group, QPalette::Base);
    mStripe = Contrast::mixed(mGround, palette.color(group, QPalette::Text), 0.05);
    const QColor accent = palette.color(group, QPalette::Highlight);
    mFill = Contrast::mixed(mGround, accent, 0.35);
    mEdge = Contrast::readable(accent, {mGround, mStripe}, Contrast::ofShapes);
    mText = group == QPalette::Disabled
                ? palette.color(group, QPalette::Text)
                : Contrast::readable(palette.color(group, QPalette::Text), {mGround, mStripe}, Contrast::ofText);
    mLine = Contrast::mixed(mGround, mText, 0.3);
    mWarning = Contrast::readable(QColor(0xd0, 0x60, 0x00), {mGround, mStripe}, Contrast::ofShapes);
    mPlayhead = Contrast::readable(QColor(0xd6, 0x3a, 0x3a), {mGround, mStripe}, Contrast::ofShapes);
}

void MacroTimelinePainter::draw(QPainter &painter, const QPalette &palette, QPalette::ColorGroup group)
{
    setColors(palette, group);
    painter.fillRect(QRect(QPoint(), mLayout.size), mGround);
    drawScale(painter);
    painter.setClipRect(QRect(0, mLayout.scaleHeight, mLayout.size.width(), mLayout.barsArea().height()));
    drawStripes(painter);
    drawNames(painter);
    painter.setClipRect(mLayout.barsArea());
    drawSelectedPause(painter);
    const MacroTimelineLayout::Range lanes = mLayout.lanesInView(mTimeline);
    for (int lane = lanes.first; lane < lanes.end; ++lane)
        drawLane(painter, lane);
    drawUnpairedReleases(painter);
    painter.setClipRect(QRect(mLayout.namesWidth, 0, mLayout.barsArea().width(), mLayout.size.height()));
    drawSelectedEvent(painter);
    drawPlayhead(painter);
    drawChangedPause(painter);
    painter.setClipping(false);
}

void MacroTimelinePainter::drawStripes(QPainter &painter) const
{
    const MacroTimelineLayout::Range lanes = mLayout.lanesInView(mTimeline);
    for (int lane = lanes.first; lane < lanes.end; ++lane) {
        if (lane % 2 == 1)
            painter.fillRect(QRect(0, mLayout.yOfLane(lane), mLayout.size.width(), mLayout.laneHeight), mStripe);
    }
}

void MacroTimelinePainter::drawScale(QPainter &painter) const
{
    const int bottom = mLayout.scaleHeight - 1;
    painter.setPen(mLine);
    painter.drawLine(0, bottom, mLayout.size.width(), bottom);
    const int distance = leastTickDistance(painter.fontMetrics());
    painter.setClipRect(QRect(mLayout.namesWidth, 0, mLayout.barsArea().width(), mLayout.scaleHeight));
    for (const MacroTimelineLayout::Tick &tick : mLayout.ticks(mTimeline, distance)) {
        painter.setPen(mLine);
        painter.drawLine(QPointF(tick.x, 0), QPointF(tick.x, bottom));
        painter.setPen(mText);
        const QRectF place(tick.x + padding, 0, distance, bottom);
        if (place.left() + painter.fontMetrics().horizontalAdvance(tick.label) <= mLayout.size.width())
            painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, tick.label);
    }
}

void MacroTimelinePainter::drawNames(QPainter &painter) const
{
    painter.setPen(mLine);
    painter.drawLine(mLayout.namesWidth - 1, mLayout.scaleHeight, mLayout.namesWidth - 1, mLayout.size.height());
    painter.setPen(mText);
    const MacroTimelineLayout::Range lanes = mLayout.lanesInView(mTimeline);
    const int room = mLayout.namesWidth - 2 * padding;
    for (int lane = lanes.first; lane < lanes.end; ++lane) {
        const QRect place(padding, mLayout.yOfLane(lane), room, mLayout.laneHeight);
        const QString name = painter.fontMetrics().elidedText(mLaneLabels.value(lane), Qt::ElideRight, room);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, name);
    }
}

void MacroTimelinePainter::drawSelectedPause(QPainter &painter) const
{
    if (!mMarks.isPauseSelected || mMarks.selectedEvent < 1)
        return;
    const double from = mLayout.xOfEvent(mTimeline, mMarks.selectedEvent - 1);
    const double to = mLayout.xOfEvent(mTimeline, mMarks.selectedEvent);
    const QRectF place(from, mLayout.scaleHeight, std::max(narrowestBar, to - from), mLayout.barsArea().height());
    painter.fillRect(place, Contrast::mixed(mGround, mEdge, 0.2));
}

/// Bars that are narrower than an outline become one filled shape as long as nothing between them can be seen. The
/// number of shapes is therefore limited by the width of the view, however many bars there are.
void MacroTimelinePainter::drawLane(QPainter &painter, int lane) const
{
    const QList<int> &bars = mTimeline.laneBars.at(lane);
    const double right = mLayout.size.width();
    const auto endsBefore = [this](int bar) {
        return mLayout.endOfBar(mTimeline, mTimeline.bars.at(bar)) < mLayout.namesWidth;
    };
    double shapeFrom = 0;
    double shapeTo = -1; // before shapeFrom: there is no shape
    const int y = mLayout.yOfLane(lane) + barGap;
    const auto finishShape = [&] {
        if (shapeTo >= shapeFrom)
            painter.fillRect(QRectF(shapeFrom, y, shapeTo - shapeFrom, mLayout.laneHeight - 2 * barGap), mEdge);
        shapeTo = shapeFrom - 1;
    };
    for (auto bar = std::ranges::partition_point(bars, endsBefore); bar != bars.end(); ++bar) {
        const MacroTimeline::Bar &one = mTimeline.bars.at(*bar);
        const double from = mLayout.xOfEvent(mTimeline, one.first);
        if (from > right)
            break;
        const double to = mLayout.endOfBar(mTimeline, one);
        if (to - from > narrowBar) {
            finishShape();
            drawBar(painter, one, from, to);
            continue;
        }
        const double narrowFrom = std::floor(from);
        const double narrowTo = std::max(std::ceil(to), narrowFrom + narrowestBar);
        if (shapeTo < shapeFrom || narrowFrom > shapeTo) {
            finishShape();
            shapeFrom = narrowFrom;
        }
        shapeTo = std::max(shapeTo, narrowTo);
    }
    finishShape();
}

void MacroTimelinePainter::drawBar(QPainter &painter, const MacroTimeline::Bar &bar, double from, double to) const
{
    // A bar may be much longer than the view is wide.
    const double left = std::max(from, mLayout.namesWidth - 2 * radius);
    const double right = std::min(to, mLayout.size.width() + 2 * radius);
    const QRectF place(left + 0.5, mLayout.yOfLane(bar.lane) + barGap + 0.5, right - left - 1,
                       mLayout.laneHeight - 2 * barGap - 1);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (bar.last < mTimeline.eventCount()) {
        painter.setPen(mEdge);
        painter.setBrush(mFill);
        painter.drawRoundedRect(place, radius, radius);
    } else {
        // Open at the right: nothing ends it.
        painter.fillRect(place, QBrush(mWarning, Qt::BDiagPattern));
        painter.setPen(QPen(mWarning, 2));
        painter.drawLine(place.topLeft(), place.bottomLeft());
        painter.drawLine(place.topLeft(), place.topRight());
        painter.drawLine(place.bottomLeft(), place.bottomRight());
    }
    painter.restore();
}

/// Draws a triangle for each.
void MacroTimelinePainter::drawUnpairedReleases(QPainter &painter) const
{
    const MacroTimelineLayout::Range events = mLayout.eventsInView(mTimeline);
    const MacroTimelineLayout::Range lanes = mLayout.lanesInView(mTimeline);
    const auto &all = mTimeline.unpairedReleases;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mWarning);
    double latestX = -1;
    int latestLane = -1;
    for (auto one = std::ranges::lower_bound(all, events.first, {}, &MacroTimeline::Bar::first);
         one != all.end() && one->first < events.end; ++one) {
        const double x = std::round(mLayout.xOfEvent(mTimeline, one->first));
        const bool isDrawn = x == latestX && one->lane == latestLane;
        if (isDrawn || one->lane < lanes.first || one->lane >= lanes.end)
            continue;
        latestX = x;
        latestLane = one->lane;
        const double y = mLayout.yOfLane(one->lane) + barGap;
        const double height = mLayout.laneHeight - 2 * barGap;
        painter.drawPolygon(QPolygonF{{x, y}, {x - height / 2, y + height}, {x + height / 2, y + height}});
    }
    painter.restore();
}

void MacroTimelinePainter::drawSelectedEvent(QPainter &painter) const
{
    if (mMarks.selectedEvent < 0 || mMarks.isPauseSelected)
        return;
    const double x = std::round(mLayout.xOfEvent(mTimeline, mMarks.selectedEvent));
    painter.fillRect(QRectF(x - 1, 0, 2, mLayout.size.height()), mText);
}

void MacroTimelinePainter::drawPlayhead(QPainter &painter) const
{
    if (mMarks.playedEvent < 0)
        return;
    const double x = std::round(mLayout.xOfEvent(mTimeline, mMarks.playedEvent));
    painter.fillRect(QRectF(x - 1, 0, 3, mLayout.size.height()), mPlayhead);
}

void MacroTimelinePainter::drawChangedPause(QPainter &painter) const
{
    if (mMarks.changedPause.isEmpty() || mLayout.shiftedEvent < 0)
        return;
    const int width = painter.fontMetrics().horizontalAdvance(mMarks.changedPause) + 2 * padding;
    const double x = mLayout.xOfEvent(mTimeline, mLayout.shiftedEvent);
    const double left = std::clamp(x - width / 2.0, double(mLayout.namesWidth),
                                   std::max<double>(mLayout.namesWidth, mLayout.size.width() - width));
    const QRectF place(left, 0, width, mLayout.scaleHeight - 1);
    painter.fillRect(place, mText);
    painter.setPen(mGround);
    painter.drawText(place, Qt::AlignCenter, mMarks.changedPause);
}
