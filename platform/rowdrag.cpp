// SPDX-License-Identifier: MIT
#include "platform/rowdrag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTableView>
#include <QTimerEvent>

namespace {

constexpr int scrollIntervalMs = 50;
constexpr int lineWidth = 2;

} // namespace

RowDrag::RowDrag(QTableView *view, std::function<int(int place)> placeNear)
    : QObject(view), mView(view), mPlaceNear(std::move(placeNear))
{
}

void RowDrag::press(const QPoint &position)
{
    stop(State::pressed);
    mStart = position;
}

bool RowDrag::move(const QMouseEvent *event)
{
    if (mState != State::idle && !event->buttons().testFlag(Qt::LeftButton))
        stop(State::idle); // the release went elsewhere
    if (mState == State::idle)
        return false;
    mPosition = event->position().toPoint();
    const int distance = (mPosition - mStart).manhattanLength();
    if (mState == State::pressed && distance >= QApplication::startDragDistance())
        mState = State::dragging;
    if (isDragging())
        follow();
    return true;
}

RowDrag::Release RowDrag::release(const QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return {.isOfDrag = isDragging(), .place = {}};
    const bool isOfDrag = isDragging() || mState == State::cancelled;
    std::optional<int> place;
    if (isDragging()) {
        mPosition = event->position().toPoint();
        place = placeOfDrop();
    }
    stop(State::idle);
    return {.isOfDrag = isOfDrag, .place = place};
}

void RowDrag::cancel()
{
    if (mState != State::idle)
        stop(State::cancelled);
}

void RowDrag::stop(State state)
{
    if (isDragging())
        mView->viewport()->unsetCursor();
    mState = state;
    mPlace.reset();
    mScroll.stop();
    mView->viewport()->update();
}

void RowDrag::follow()
{
    mPlace = placeOfDrop();
    mView->viewport()->setCursor(mPlace ? Qt::DragMoveCursor : Qt::ForbiddenCursor);
    if (scrollStep() == 0)
        mScroll.stop();
    else if (!mScroll.isActive())
        mScroll.start(scrollIntervalMs, this);
    mView->viewport()->update();
}

std::optional<int> RowDrag::placeOfDrop() const
{
    if (!mView->viewport()->rect().contains(mPosition))
        return {};
    const int row = mView->rowAt(mPosition.y());
    if (row < 0)
        return mPlaceNear(mView->model()->rowCount());
    const int middle = mView->rowViewportPosition(row) + mView->rowHeight(row) / 2;
    return mPlaceNear(mPosition.y() < middle ? row : row + 1);
}

/// The further the mouse is beyond the edge, the more rows.
int RowDrag::scrollStep() const
{
    const int rowHeight = std::max(1, mView->rowHeight(0));
    const int margin = rowHeight / 2;
    const int above = margin - mPosition.y();
    const int below = mPosition.y() - (mView->viewport()->height() - margin);
    if (above > 0)
        return -1 - above / rowHeight;
    return below > 0 ? 1 + below / rowHeight : 0;
}

void RowDrag::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != mScroll.timerId())
        return QObject::timerEvent(event);
    QScrollBar *bar = mView->verticalScrollBar();
    bar->setValue(bar->value() + scrollStep() * bar->singleStep());
    follow();
}

void RowDrag::paint(QPainter &painter) const
{
    const int count = mView->model()->rowCount();
    if (!isDragging() || !mPlace || count == 0)
        return;
    const int last = count - 1;
    const int y = *mPlace < count ? mView->rowViewportPosition(*mPlace)
                                  : mView->rowViewportPosition(last) + mView->rowHeight(last);
    const int top = std::clamp(y - lineWidth / 2, 0, mView->viewport()->height() - lineWidth);
    painter.fillRect(0, top, mView->viewport()->width(), lineWidth, mView->palette().color(QPalette::Text));
}
