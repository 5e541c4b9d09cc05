// SPDX-License-Identifier: MIT
#include "keys/macropreview.h"

#include "platform/contrast.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int maximumLanes = 3;
constexpr int laneGap = 3;
constexpr qreal mostStretch = 2;
constexpr qreal padding = 4;       // beside the name in a bar
constexpr qreal smallestPause = 5; // in pixels
constexpr qreal largestPause = 60; // in pixels
constexpr qreal pixelsPerSecond = 80;
constexpr qreal radius = 3;

} // namespace

MacroPreview::MacroPreview(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MacroPreview::show(const MacroTimeline &timeline)
{
    mTimeline = timeline;
    setVisible(!timeline.bars.isEmpty());
    updateGeometry();
    update();
}

QSize MacroPreview::sizeHint() const
{
    const int lanes = std::clamp(mTimeline.lanes, 1, maximumLanes);
    return {240, lanes * (fontMetrics().height() + laneGap)};
}

QSize MacroPreview::minimumSizeHint() const
{
    return {48, sizeHint().height()};
}

/// The x of each event, and behind them that of the end.
QList<qreal> MacroPreview::placesOfEvents() const
{
    const qsizetype count = mTimeline.delaysMs.size();
    QList<qreal> steps(count + 1, smallestPause);
    for (qsizetype index = 0; index < count; ++index)
        steps[index] = std::clamp(mTimeline.delaysMs[index] * pixelsPerSecond / 1000, smallestPause, largestPause);
    steps.first() = 0;
    // A bar is wide enough for its name, as far as its release alone determines its width.
    for (const MacroTimeline::Bar &bar : mTimeline.bars) {
        const qreal name = fontMetrics().horizontalAdvance(bar.name) + 2 * padding;
        if (bar.last == bar.first + 1)
            steps[bar.last] = std::max(steps[bar.last], name);
    }
    // A short macro uses the room that there is.
    const qreal length = std::accumulate(steps.begin(), steps.end(), 0.0);
    const qreal stretch = std::clamp(width() / std::max(1.0, length), 1.0, mostStretch);
    QList<qreal> places;
    qreal x = 0;
    for (const qreal step : std::as_const(steps))
        places += x += step * stretch;
    places.last() = std::floor(places.last()); // rounding must not make the last bar too long
    return places;
}

void MacroPreview::paintEvent(QPaintEvent *)
{
    if (mTimeline.bars.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor ground = palette().color(group, QPalette::Base);
    const QColor accent = palette().color(group, QPalette::Highlight);
    const QColor fill = Contrast::mixed(ground, accent, 0.25);
    const QColor edge = Contrast::readable(accent, {ground}, Contrast::ofShapes);
    const QColor text = isEnabled()
                            ? Contrast::readable(palette().color(group, QPalette::Text), {fill}, Contrast::ofText)
                            : palette().color(group, QPalette::Text);
    const QString ellipsis = u"…"_s;
    const QList<qreal> places = placesOfEvents();
    const bool isWhole = places.last() <= width() && mTimeline.lanes <= maximumLanes;
    const qreal end = isWhole ? width() : width() - fontMetrics().horizontalAdvance(ellipsis) - padding;
    const int laneHeight = fontMetrics().height() + laneGap;
    for (const MacroTimeline::Bar &bar : mTimeline.bars) {
        if (bar.lane >= maximumLanes || places[bar.last] > end)
            continue;
        const QRectF place(places[bar.first] + 0.5, bar.lane * laneHeight + 0.5,
                           places[bar.last] - places[bar.first] - 1, laneHeight - laneGap);
        painter.setPen(edge);
        painter.setBrush(fill);
        painter.drawRoundedRect(place, radius, radius);
        painter.setPen(text);
        const int room = static_cast<int>(place.width()) - 2;
        painter.drawText(place, Qt::AlignCenter, fontMetrics().elidedText(bar.name, Qt::ElideRight, room));
    }
    painter.setPen(palette().color(group, QPalette::Text));
    if (!isWhole)
        painter.drawText(QRectF(end, 0, width() - end, laneHeight), Qt::AlignRight | Qt::AlignVCenter, ellipsis);
}
