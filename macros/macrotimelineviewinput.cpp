// SPDX-License-Identifier: MIT
// What the user does in the timeline: selecting events, changing pauses, zooming.
#include "macros/macrotimelineaccessibility.h"
#include "macros/macrotimelineview.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

constexpr int edgeReach = 5;    // pixels at each side of an edge with which the mouse takes it
constexpr int dragDistance = 3; // pixels from which on a pressed mouse drags
constexpr double wheelZoomStep = 1.25;

bool changesPause(const QKeyEvent *event)
{
    return event->modifiers().testFlag(Qt::AltModifier)
           && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right);
}

} // namespace

// Selecting

void MacroTimelineView::chooseEvent(int event)
{
    MacroTimeline::Rows rows = mTimeline.rows.value(event);
    if (rows == MacroTimeline::Rows())
        rows = mTimeline.rows.value(event + 1); // a first event without a row
    Q_EMIT rowChosen(rows.event >= 0 ? rows.event : rows.delay);
}

auto MacroTimelineView::hitAt(const QPoint &place) const -> Hit
{
    const int lane = mLayout.laneAt(place.y());
    if (lane < 0 || lane >= mTimeline.lanes || !mLayout.barsArea().contains(place))
        return {};
    Hit hit;
    double nearest = edgeReach;
    const auto offerEdge = [&](int event) {
        const double x = mLayout.xOfEvent(mTimeline, event);
        const double distance = std::abs(x - place.x());
        // Of two edges at one place, the one of the bar below the mouse.
        if (distance > nearest || (distance == nearest && hit.isEdge && place.x() < x))
            return;
        nearest = distance;
        hit = {event, true};
    };
    const QList<int> &bars = mTimeline.laneBars.at(lane);
    const auto isBefore = [&](int bar) {
        return mLayout.endOfBar(mTimeline, mTimeline.bars.at(bar)) < place.x() - edgeReach;
    };
    for (auto bar = std::ranges::partition_point(bars, isBefore); bar != bars.end(); ++bar) {
        const MacroTimeline::Bar &one = mTimeline.bars.at(*bar);
        const double from = mLayout.xOfEvent(mTimeline, one.first);
        if (from > place.x() + edgeReach)
            break;
        if (!hit.isEdge && from <= place.x() && place.x() <= mLayout.endOfBar(mTimeline, one))
            hit.event = one.first;
        offerEdge(one.first);
        if (one.last < mTimeline.eventCount())
            offerEdge(one.last);
    }
    for (const MacroTimeline::Bar &release : mTimeline.unpairedReleases) {
        if (release.lane == lane)
            offerEdge(release.first);
    }
    return hit;
}

void MacroTimelineView::stepSelection(int key)
{
    const int last = mTimeline.eventCount() - 1;
    const int selected = selectedEvent();
    if (last < 0)
        return;
    switch (key) {
    case Qt::Key_Home: return chooseEvent(0);
    case Qt::Key_End: return chooseEvent(last);
    case Qt::Key_Left: return chooseEvent(std::max(0, selected - 1));
    default: break;
    }
    // From a pause, the next event is the one behind it.
    const bool isPause =
        selected >= 0 && mTimeline.rows.at(selected).event >= 0 && mTimeline.rows.at(selected).delay == mSelectedRow;
    chooseEvent(std::min(last, isPause ? selected : selected + 1));
}

// Changing a pause

bool MacroTimelineView::canChangePause(int event) const
{
    return mIsEditable && isEnabled() && event > 0 && event < mTimeline.eventCount()
           && mTimeline.rows.at(event).delay >= 0;
}

void MacroTimelineView::stepPause(int steps)
{
    const int event = selectedEvent();
    if (!canChangePause(event) || (mChange && mChange->isDrag))
        return;
    if (!mChange)
        mChange = Change{.event = event, .delayMs = mTimeline.delaysMs.at(event)};
    setChangedDelay(mChange->delayMs + steps * pauseStepMs);
}

void MacroTimelineView::setChangedDelay(int delayMs)
{
    mChange->hasMoved = true;
    mChange->delayMs = std::clamp(delayMs, 0, longestPauseMs);
    mLayout.shiftedEvent = mChange->event;
    mLayout.shiftMs = mChange->delayMs - mTimeline.delaysMs.at(mChange->event);
    viewport()->update();
    MacroTimelineAccessibility::reportChange(this);
}

void MacroTimelineView::finishChange()
{
    if (!mChange)
        return;
    const Change change = *mChange;
    discardChange();
    if (change.hasMoved && change.delayMs != mTimeline.delaysMs.at(change.event))
        Q_EMIT pauseChosen(mTimeline.rows.at(change.event).delay, change.delayMs);
}

void MacroTimelineView::discardChange()
{
    if (!mChange)
        return;
    mChange.reset();
    mLayout.shiftedEvent = -1;
    mLayout.shiftMs = 0;
    viewport()->update();
}

// Keys

bool MacroTimelineView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (changesPause(key) || (key->key() == Qt::Key_Escape && mChange)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void MacroTimelineView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && mChange)
        return discardChange();
    if (changesPause(event))
        return stepPause(event->key() == Qt::Key_Left ? -1 : 1);
    const Qt::KeyboardModifiers commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (event->modifiers() & commands)
        return QAbstractScrollArea::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End: finishChange(); return stepSelection(event->key());
    case Qt::Key_Plus:
    case Qt::Key_Equal: return zoomIn();
    case Qt::Key_Minus: return zoomOut();
    case Qt::Key_0: return fit();
    default: return QAbstractScrollArea::keyPressEvent(event);
    }
}

void MacroTimelineView::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Alt && mChange && !mChange->isDrag)
        return finishChange();
    QAbstractScrollArea::keyReleaseEvent(event);
}

// The mouse

void MacroTimelineView::mousePressEvent(QMouseEvent *event)
{
    finishChange(); // one with the keys
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint place = event->position().toPoint();
    const Hit hit = hitAt(place);
    if (hit.event < 0)
        return;
    chooseEvent(hit.event);
    if (hit.isEdge && canChangePause(hit.event))
        mChange = Change{
            .event = hit.event, .delayMs = mTimeline.delaysMs.at(hit.event), .isDrag = true, .grabbedX = place.x()};
}

void MacroTimelineView::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint place = event->position().toPoint();
    if (!mChange || !mChange->isDrag) {
        if (event->buttons() == Qt::NoButton)
            updateCursor(place);
        return;
    }
    const int distance = place.x() - mChange->grabbedX;
    if (!mChange->hasMoved && std::abs(distance) < dragDistance)
        return;
    const double delayMs = mTimeline.delaysMs.at(mChange->event) + distance / mLayout.pixelsPerMs;
    setChangedDelay(static_cast<int>(std::clamp(std::round(delayMs), 0.0, double(longestPauseMs))));
}

void MacroTimelineView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && mChange && mChange->isDrag)
        finishChange();
}

void MacroTimelineView::updateCursor(const QPoint &place)
{
    const Hit hit = hitAt(place);
    const bool canDrag = hit.isEdge && canChangePause(hit.event);
    viewport()->setCursor(canDrag ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void MacroTimelineView::wheelEvent(QWheelEvent *event)
{
    if (mChange)
        return; // the edge must stay below the mouse
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        const double steps = event->angleDelta().y() / 120.0;
        setScale(mLayout.pixelsPerMs * std::pow(wheelZoomStep, steps), event->position().x());
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

bool MacroTimelineView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const int hit = hitAt(help->pos()).event;
        QToolTip::showText(help->globalPos(), hit >= 0 ? eventText(hit) : QString(), viewport());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}
