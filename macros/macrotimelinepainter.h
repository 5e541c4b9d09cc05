// SPDX-License-Identifier: MIT
// Draws a timeline: the time scale, the names of the lanes, the bars, and the marks of the selection and of the
// playback. Draws only what is in view. A value for one picture; main thread only.
#pragma once

#include "macros/macrotimelinelayout.h"

#include <QColor>
#include <QPalette>
#include <QStringList>

class QPainter;

class MacroTimelinePainter
{
public:
    struct Marks
    {
        int selectedEvent = -1;       ///< -1 for none
        bool isPauseSelected = false; ///< the pause before the selected event, instead of the event
        int playedEvent = -1;         ///< -1 for none
        QString changedPause;         ///< the pause while the user changes it, with its unit
    };

    /// `laneLabels` has a name for each lane. The references must outlive the painter.
    MacroTimelinePainter(const MacroTimeline &timeline, const MacroTimelineLayout &layout,
                         const QStringList &laneLabels, const Marks &marks);

    /// Draws in the colours of `group`.
    void draw(QPainter &painter, const QPalette &palette, QPalette::ColorGroup group);

    /// The least distance of two marks of the time scale that leaves room for their labels.
    [[nodiscard]] static int leastTickDistance(const QFontMetrics &metrics);

private:
    void setColors(const QPalette &palette, QPalette::ColorGroup group);
    void drawStripes(QPainter &painter) const;
    void drawScale(QPainter &painter) const;
    void drawNames(QPainter &painter) const;
    void drawSelectedPause(QPainter &painter) const;
    void drawLane(QPainter &painter, int lane) const;
    void drawBar(QPainter &painter, const MacroTimeline::Bar &bar, double from, double to) const;
    void drawUnpairedReleases(QPainter &painter) const;
    void drawSelectedEvent(QPainter &painter) const;
    void drawPlayhead(QPainter &painter) const;
    void drawChangedPause(QPainter &painter) const;

    const MacroTimeline &mTimeline;
    const MacroTimelineLayout &mLayout;
    const QStringList &mLaneLabels;
    const Marks &mMarks;
    QColor mGround;
    QColor mStripe;
    QColor mText;
    QColor mFill;
    QColor mEdge;
    QColor mLine;    ///< of marks of the time scale
    QColor mWarning; ///< of keys that are left down and of releases without a press
    QColor mPlayhead;
};
