// SPDX-License-Identifier: MIT
#include "platform/scrolledpage.h"

#include <QApplication>
#include <QLayout>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int leastContent = 80; // a control and its surroundings
constexpr int stepOfWheel = 20;

} // namespace

ScrolledPage::ScrolledPage(QWidget *content, QWidget *parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidget(content);
    // The surroundings show through.
    content->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    for (QScrollBar *bar : {horizontalScrollBar(), verticalScrollBar()})
        bar->setSingleStep(stepOfWheel);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { followFocus(now); });
}

ScrolledPage::~ScrolledPage()
{
    disconnect(qApp, nullptr, this, nullptr); // the base class deletes the content, whose focus goes
}

QSize ScrolledPage::sizeHint() const
{
    return widget()->sizeHint().expandedTo(widget()->minimumSize());
}

QSize ScrolledPage::minimumSizeHint() const
{
    return {leastContent + verticalScrollBar()->sizeHint().width(),
            leastContent + horizontalScrollBar()->sizeHint().height()};
}

/// The least size of the content, if it can be `width` wide.
QSize ScrolledPage::leastSize(int width) const
{
    QSize size = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    const QLayout *layout = widget()->layout();
    if (layout->hasHeightForWidth())
        size.setHeight(layout->totalMinimumHeightForWidth(std::max(width, size.width())));
    return size;
}

void ScrolledPage::layOut()
{
    QSize place = maximumViewportSize();
    QSize least = leastSize(place.width());
    const auto makeRoomBeside = [&](const QScrollBar *bar) {
        if (bar->orientation() == Qt::Horizontal) {
            place.rheight() -= bar->sizeHint().height();
            return;
        }
        place.rwidth() -= bar->sizeHint().width();
        least = leastSize(place.width());
    };
    const bool isLow = least.height() > place.height();
    if (isLow)
        makeRoomBeside(verticalScrollBar());
    if (least.width() > place.width()) {
        makeRoomBeside(horizontalScrollBar());
        if (!isLow && least.height() > place.height())
            makeRoomBeside(verticalScrollBar());
    }
    widget()->resize(least.expandedTo(place));
}

bool ScrolledPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest && isVisible())
        layOut();
    return QScrollArea::eventFilter(watched, event);
}

void ScrolledPage::resizeEvent(QResizeEvent *event)
{
    layOut();
    QScrollArea::resizeEvent(event);
}

void ScrolledPage::showEvent(QShowEvent *event)
{
    layOut(); // the content may have changed while it was hidden
    QScrollArea::showEvent(event);
}

void ScrolledPage::showPart(QWidget *part)
{
    const QRect place(part->mapTo(widget(), QPoint()), part->size());
    const QSize room = viewport()->size();
    if (place.width() > room.width() || place.height() > room.height()) {
        ensureWidgetVisible(part, 0, 0);
        return;
    }
    constexpr int surroundings = 12;
    const QPoint middle = place.center();
    ensureVisible(middle.x(), middle.y(), std::min(place.width() / 2 + surroundings, room.width() / 2),
                  std::min(place.height() / 2 + surroundings, room.height() / 2));
}

void ScrolledPage::followFocus(QWidget *focused)
{
    if (focused && isVisible() && widget()->isAncestorOf(focused) && focused->window() == window()
        && QGuiApplication::mouseButtons() == Qt::NoButton)
        showPart(focused);
}
