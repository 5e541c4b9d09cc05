// SPDX-License-Identifier: MIT
// What the timeline shows. The user's actions are in macrotimelineviewinput.cpp.
#include "macros/macrotimelineview.h"

#include "base/text.h"
#include "macros/eventline.h"
#include "macros/macrotimelineaccessibility.h"
#include "macros/macrotimelinepainter.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int laneGap = 6;
constexpr int leastLanes = 2;
constexpr int usualLanes = 4;
constexpr int namePadding = 8;
constexpr int mostNames = 4;  // the names take at most one part of so many of the width
constexpr int eventReach = 4; // pixels at each side of an event that belong to its mark
constexpr double zoomStep = 1.5;

QString seconds(qint64 timeMs)
{
    return QString::number(double(timeMs) / 1000, 'f', 3);
}

} // namespace

MacroTimelineView::MacroTimelineView(QWidget *parent) : QAbstractScrollArea(parent)
{
    MacroTimelineAccessibility::install();
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(localizedText("lkeyTimeline"));
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent); // the painter fills all of it
    updateLayout();
}

MacroTimelineView::~MacroTimelineView() = default;

void MacroTimelineView::showEvents(const QStringList &lines, const QVariantList &events)
{
    mChange.reset();
    mLayout.shiftedEvent = -1;
    mSelectedRow = -1;
    mPlayedEvent = -1;
    mLines = lines;
    mTimeline = MacroTimeline::ofLines(lines, events);
    mLaneLabels = mTimeline.laneNames;
    for (QString &label : mLaneLabels) {
        if (label.isEmpty())
            label = localizedText("lkeyTimelineUnnamedKey");
    }
    updateLayout();
}

void MacroTimelineView::updateLayout()
{
    const QFontMetrics metrics = fontMetrics();
    int widestName = 0;
    for (const QString &label : std::as_const(mLaneLabels))
        widestName = std::max(widestName, metrics.horizontalAdvance(label));
    mLayout.size = viewport()->size();
    mLayout.namesWidth = std::min(widestName + namePadding + 1, mLayout.size.width() / mostNames);
    mLayout.scaleHeight = metrics.height() + 4;
    mLayout.laneHeight = metrics.height() + laneGap;
    const double fittingScale = mLayout.fittingScale(mTimeline);
    constexpr double rounding = 1.001;
    mIsFitting = mIsFitting || mLayout.pixelsPerMs <= fittingScale * rounding;
    if (mIsFitting)
        mLayout.pixelsPerMs = fittingScale;
    const QSize content = mLayout.contentSize(mTimeline);
    const QSize room = mLayout.barsArea().size();
    horizontalScrollBar()->setRange(0, std::max(0, content.width() - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    horizontalScrollBar()->setSingleStep(mLayout.laneHeight);
    verticalScrollBar()->setRange(0, std::max(0, content.height() - room.height()));
    verticalScrollBar()->setPageStep(room.height());
    verticalScrollBar()->setSingleStep(mLayout.laneHeight);
    scrollContentsBy(0, 0);
}

void MacroTimelineView::scrollContentsBy(int, int)
{
    mLayout.left = horizontalScrollBar()->value();
    mLayout.top = verticalScrollBar()->value();
    viewport()->update();
}

void MacroTimelineView::setScale(double pixelsPerMs, double anchorX)
{
    const double anchorMs = mLayout.timeOfX(anchorX);
    mIsFitting = false;
    mLayout.pixelsPerMs = std::min(pixelsPerMs, mLayout.largestScaleOf(mTimeline));
    updateLayout();
    const double left = mLayout.left + mLayout.xOfTime(anchorMs) - anchorX;
    horizontalScrollBar()->setValue(int(std::round(std::clamp(left, 0.0, double(horizontalScrollBar()->maximum())))));
}

/// The place that keeps its time when the user zooms without the mouse: the selected event if it is in view.
double MacroTimelineView::anchor() const
{
    const QRect area = mLayout.barsArea();
    const double selected = selectedEvent() < 0 ? -1 : mLayout.xOfEvent(mTimeline, selectedEvent());
    return selected >= area.left() && selected <= area.right() ? selected : area.center().x();
}

void MacroTimelineView::fit()
{
    mIsFitting = true;
    updateLayout();
}

void MacroTimelineView::zoomIn()
{
    setScale(mLayout.pixelsPerMs * zoomStep, anchor());
}

void MacroTimelineView::zoomOut()
{
    setScale(mLayout.pixelsPerMs / zoomStep, anchor());
}

void MacroTimelineView::selectRow(int row)
{
    if (mChange && mTimeline.eventOfRow(row) != mChange->event)
        discardChange();
    if (row == mSelectedRow)
        return;
    mSelectedRow = row;
    if (selectedEvent() >= 0)
        showEventInView(selectedEvent());
    viewport()->update();
    MacroTimelineAccessibility::reportSelection(this);
}

int MacroTimelineView::selectedEvent() const
{
    return mTimeline.eventOfRow(mSelectedRow);
}

void MacroTimelineView::setEditable(bool isEditable)
{
    mIsEditable = isEditable;
    if (!isEditable)
        discardChange();
}

void MacroTimelineView::setWatched(bool isWatched)
{
    mIsWatched = isWatched;
    viewport()->update();
}

void MacroTimelineView::setPlayhead(int event)
{
    mPlayedEvent = event >= 0 && event < mTimeline.eventCount() ? event : -1;
    if (mPlayedEvent >= 0)
        showEventInView(mPlayedEvent);
    viewport()->update();
}

void MacroTimelineView::clearPlayhead()
{
    setPlayhead(-1);
}

void MacroTimelineView::showEventInView(int event)
{
    const QRect area = mLayout.barsArea();
    const double x = mLayout.xOfEvent(mTimeline, event);
    if (x < area.left() || x > area.right() - eventReach)
        horizontalScrollBar()->setValue(mLayout.left + int(std::round(x)) - area.center().x());
    const QRect place = eventRect(event);
    if (place.height() > mLayout.laneHeight)
        return; // it has no lane
    if (place.top() < area.top())
        verticalScrollBar()->setValue(mLayout.top + place.top() - area.top());
    else if (place.bottom() > area.bottom())
        verticalScrollBar()->setValue(mLayout.top + place.bottom() - area.bottom());
}

// Queries

QRect MacroTimelineView::laneRect(int lane) const
{
    return {0, mLayout.yOfLane(lane), mLayout.size.width(), mLayout.laneHeight};
}

QRect MacroTimelineView::eventRect(int event) const
{
    const int x = int(std::round(mLayout.xOfEvent(mTimeline, event)));
    const int lane = mTimeline.laneOfEvent(event);
    const QRect lanePlace = lane < 0 ? mLayout.barsArea() : laneRect(lane);
    return {x - eventReach, lanePlace.top(), 2 * eventReach + 1, lanePlace.height()};
}

QString MacroTimelineView::eventText(int event) const
{
    const MacroTimeline::Rows rows = mTimeline.rows.value(event);
    const bool hasRow = rows != MacroTimeline::Rows();
    const QString line = hasRow ? mLines.value(rows.event >= 0 ? rows.event : rows.delay).trimmed()
                                : u"0.000 seconds delay"_s; // a first event without a row
    const QString text = localizedFormat("lkeyTimelineEvent", {line, seconds(mTimeline.timesMs.value(event)),
                                                               QString::number(mTimeline.delaysMs.value(event))});
    // During a recording, pressed keys are still to be released.
    if (mIsWatched || rows.event < 0 || !mTimeline.unpairedRows().contains(rows.event))
        return text;
    const bool isRelease = eventLineKind(line) == EventLineKind::release;
    return text + u'\n' + localizedText(isRelease ? "lkeyUnpairedRelease" : "lkeyUnpairedPress");
}

QString MacroTimelineView::summary() const
{
    if (mTimeline.eventCount() == 0)
        return {};
    const QString comma = localizedText("lkeyTypeTextComma");
    const QString summary =
        localizedFormat("lkeyTimelineSummary", {QString::number(mTimeline.eventCount()), seconds(mTimeline.durationMs),
                                                mLaneLabels.join(comma)});
    const QString leftDown = mIsWatched ? QString() : leftDownText();
    return leftDown.isEmpty() ? summary : summary + u' ' + leftDown;
}

QString MacroTimelineView::leftDownText() const
{
    QStringList keys;
    for (const int bar : mTimeline.barsLeftDown())
        keys += mLaneLabels.value(mTimeline.bars.at(bar).lane);
    return keys.isEmpty() ? QString()
                          : localizedFormat("lkeyTimelineLeftDown", {keys.join(localizedText("lkeyTypeTextComma"))});
}

QString MacroTimelineView::scaleText() const
{
    QStringList labels;
    const int distance = MacroTimelinePainter::leastTickDistance(fontMetrics());
    for (const MacroTimelineLayout::Tick &tick : mLayout.ticks(mTimeline, distance))
        labels += tick.label;
    return labels.join(localizedText("lkeyTypeTextComma"));
}

QString MacroTimelineView::changedPause() const
{
    return mChange ? QString::number(mChange->delayMs) + " ms"_L1 : QString();
}

QSize MacroTimelineView::sizeHint() const
{
    return {300, mLayout.scaleHeight + usualLanes * mLayout.laneHeight + 2 * frameWidth()};
}

QSize MacroTimelineView::minimumSizeHint() const
{
    return {120, mLayout.scaleHeight + leastLanes * mLayout.laneHeight + 2 * frameWidth()
                     + horizontalScrollBar()->sizeHint().height()};
}

// Events of the widget

void MacroTimelineView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    const int selected = selectedEvent();
    const bool isPause = selected >= 0 && mTimeline.rows.at(selected).delay == mSelectedRow;
    const MacroTimelinePainter::Marks marks{.selectedEvent = selected,
                                            .isPauseSelected = isPause,
                                            .playedEvent = mPlayedEvent,
                                            .changedPause = changedPause()};
    const bool looksEnabled = isEnabled() || mIsWatched;
    MacroTimelinePainter(mTimeline, mLayout, mLaneLabels, marks)
        .draw(painter, palette(), looksEnabled ? QPalette::Active : QPalette::Disabled);
    // Like the lists, shows the focus only to users of the keyboard.
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        constexpr int width = 2;
        painter.setPen(QPen(palette().color(QPalette::Highlight), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(viewport()->rect().adjusted(width / 2, width / 2, -width / 2, -width / 2));
    }
}

void MacroTimelineView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateLayout();
}

void MacroTimelineView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        discardChange();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateLayout();
        updateGeometry();
    }
}

void MacroTimelineView::hideEvent(QHideEvent *event)
{
    discardChange();
    QAbstractScrollArea::hideEvent(event);
}

void MacroTimelineView::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    MacroTimelineAccessibility::reportSelection(this);
}

void MacroTimelineView::focusOutEvent(QFocusEvent *event)
{
    // The release of Alt would come to another widget.
    if (mChange && !mChange->isDrag)
        finishChange();
    discardChange();
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}
