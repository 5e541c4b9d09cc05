// SPDX-License-Identifier: MIT
#include "macros/macrotimelinelayout.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double widestContent = 1'000'000'000; // fits into the range of a scroll bar

struct TickStep
{
    double ms;
    int decimals; // of the seconds in the labels
};

/// Returns the shortest step that is at least `leastMs`: 1, 2 or 5 times a power of ten.
TickStep tickStep(double leastMs)
{
    double power = 1;
    int decimals = 3;
    while (true) {
        for (const double step : {1.0, 2.0, 5.0}) {
            if (step * power >= leastMs)
                return {step * power, std::max(0, decimals)};
        }
        power *= 10;
        --decimals;
    }
}

} // namespace

qint64 MacroTimelineLayout::durationMs(const MacroTimeline &timeline) const
{
    return timeline.durationMs + (shiftedEvent >= 0 ? shiftMs : 0);
}

qint64 MacroTimelineLayout::timeMs(const MacroTimeline &timeline, int event) const
{
    const bool isShifted = shiftedEvent >= 0 && event >= shiftedEvent;
    return timeline.timesMs.at(event) + (isShifted ? shiftMs : 0);
}

double MacroTimelineLayout::xOfTime(double timeMs) const
{
    return namesWidth + margin + timeMs * pixelsPerMs - left;
}

double MacroTimelineLayout::xOfEvent(const MacroTimeline &timeline, int event) const
{
    return xOfTime(static_cast<double>(timeMs(timeline, event)));
}

double MacroTimelineLayout::endOfBar(const MacroTimeline &timeline, const MacroTimeline::Bar &bar) const
{
    if (bar.last < timeline.eventCount())
        return xOfEvent(timeline, bar.last);
    return xOfTime(static_cast<double>(durationMs(timeline))) + tail;
}

double MacroTimelineLayout::timeOfX(double x) const
{
    return (x - namesWidth - margin + left) / pixelsPerMs;
}

int MacroTimelineLayout::laneAt(int y) const
{
    return y < scaleHeight ? -1 : (y - scaleHeight + top) / laneHeight;
}

QRect MacroTimelineLayout::barsArea() const
{
    return {namesWidth, scaleHeight, std::max(0, size.width() - namesWidth), std::max(0, size.height() - scaleHeight)};
}

auto MacroTimelineLayout::lanesInView(const MacroTimeline &timeline) const -> Range
{
    const int end = std::min(timeline.lanes, laneAt(std::max(scaleHeight, size.height() - 1)) + 1);
    return {std::min(top / laneHeight, end), end};
}

auto MacroTimelineLayout::eventsInView(const MacroTimeline &timeline) const -> Range
{
    const int count = timeline.eventCount();
    const auto firstFrom = [&](double x) { // the first event at x or to the right of it
        int first = 0;
        int end = count;
        while (first < end) {
            const int middle = first + (end - first) / 2;
            if (xOfEvent(timeline, middle) < x)
                first = middle + 1;
            else
                end = middle;
        }
        return first;
    };
    return {firstFrom(namesWidth), firstFrom(size.width())};
}

auto MacroTimelineLayout::ticks(const MacroTimeline &timeline, int leastDistance) const -> QList<Tick>
{
    QList<Tick> marks;
    if (timeline.eventCount() == 0 || barsArea().isEmpty())
        return marks;
    const TickStep step = tickStep(leastDistance / pixelsPerMs);
    const double endMs = std::min(timeOfX(size.width()), static_cast<double>(durationMs(timeline)));
    for (double number = std::max(0.0, std::ceil(timeOfX(namesWidth) / step.ms)); number * step.ms <= endMs; ++number) {
        const double timeMs = number * step.ms;
        marks.append({xOfTime(timeMs), QString::number(timeMs / 1000, 'f', step.decimals) + " s"_L1});
    }
    return marks;
}

double MacroTimelineLayout::fittingScale(const MacroTimeline &timeline) const
{
    const double room = std::max(1, size.width() - namesWidth - margin - tail);
    return std::min(room / std::max(1.0, static_cast<double>(timeline.durationMs)), largestScale);
}

double MacroTimelineLayout::largestScaleOf(const MacroTimeline &timeline)
{
    return std::min(largestScale, widestContent / std::max(1.0, static_cast<double>(timeline.durationMs)));
}

QSize MacroTimelineLayout::contentSize(const MacroTimeline &timeline) const
{
    const double width = static_cast<double>(durationMs(timeline)) * pixelsPerMs;
    return {margin + tail + static_cast<int>(std::ceil(std::min(width - 1e-6, widestContent))),
            timeline.lanes * laneHeight};
}
