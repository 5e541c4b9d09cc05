// SPDX-License-Identifier: MIT
// The places of a timeline's events and lanes on the screen, in pixels from the upper left corner of the view. A value;
// pure; any thread.
#pragma once

#include "macros/macrotimeline.h"

#include <QRect>
#include <QSize>

/// From the top: the time scale, then the lanes. From the left: the names of the lanes, then the bars. The names and
/// the scale do not scroll. The whole macro is in the view at the smallest scale; the largest has 8 pixels for a
/// millisecond.
struct MacroTimelineLayout
{
    static constexpr int margin = 8; ///< before the first event
    static constexpr int tail = 24;  ///< behind the last event: keys that are left down end here
    static constexpr double largestScale = 8;

    /// A mark of the time scale.
    struct Tick
    {
        double x = 0;
        QString label;
    };

    /// The indexes of events or lanes, from `first` to before `end`.
    struct Range
    {
        int first = 0;
        int end = 0;

        [[nodiscard]] int count() const { return end - first; }
    };

    QSize size; ///< of the view
    int namesWidth = 0;
    int scaleHeight = 0;
    int laneHeight = 1;
    double pixelsPerMs = 1;
    int left = 0;          ///< how far the bars are scrolled to the left
    int top = 0;           ///< how far the lanes are scrolled up
    int shiftedEvent = -1; ///< this event and all after it occur `shiftMs` later than in the timeline; -1 for none
    qint64 shiftMs = 0;

    [[nodiscard]] qint64 durationMs(const MacroTimeline &timeline) const;
    [[nodiscard]] qint64 timeMs(const MacroTimeline &timeline, int event) const;
    [[nodiscard]] double xOfTime(double timeMs) const;
    [[nodiscard]] double xOfEvent(const MacroTimeline &timeline, int event) const;
    /// Returns where `bar` ends: at its last event, or in the tail.
    [[nodiscard]] double endOfBar(const MacroTimeline &timeline, const MacroTimeline::Bar &bar) const;
    [[nodiscard]] double timeOfX(double x) const; ///< in milliseconds; may be before 0 or behind the end
    [[nodiscard]] int yOfLane(int lane) const { return scaleHeight + lane * laneHeight - top; }
    /// Returns the lane at `y`; -1 for the scale. The lane may be behind the last one.
    [[nodiscard]] int laneAt(int y) const;
    [[nodiscard]] QRect barsArea() const; ///< without names and scale

    [[nodiscard]] Range lanesInView(const MacroTimeline &timeline) const;
    [[nodiscard]] Range eventsInView(const MacroTimeline &timeline) const;
    /// Returns the marks in view, at times that are easy to read. At least `leastDistance` is between two marks.
    [[nodiscard]] QList<Tick> ticks(const MacroTimeline &timeline, int leastDistance) const;

    /// Returns the scale at which the whole macro is in the view.
    [[nodiscard]] double fittingScale(const MacroTimeline &timeline) const;
    /// Returns the largest scale, with which everything is still within the range of a scroll bar.
    [[nodiscard]] static double largestScaleOf(const MacroTimeline &timeline);
    /// Returns how wide and high everything is that scrolls.
    [[nodiscard]] QSize contentSize(const MacroTimeline &timeline) const;
};
