// SPDX-License-Identifier: MIT
#include "app/afterpainting.h"

#include <QEvent>
#include <QWidget>
#include <QWindow>

AfterPainting::AfterPainting(QWidget *window, std::function<void()> function, std::chrono::milliseconds limit)
    : QObject(window), mFunction(std::move(function))
{
    window->installEventFilter(this);
    mTimer.setSingleShot(true);
    connect(&mTimer, &QTimer::timeout, this, [this] {
        parent()->removeEventFilter(this);
        mFunction();
        deleteLater();
    });
    mTimer.start(limit);
}

bool AfterPainting::eventFilter(QObject *watched, QEvent *event)
{
    // The window's exposure causes the first painting; the window itself requests every later one. The user does not
    // see what is painted before the exposure.
    const bool isPainting = event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint;
    const QWindow *window = static_cast<QWidget *>(watched)->windowHandle();
    if (isPainting && window && window->isExposed()) {
        watched->removeEventFilter(this);
        // The event loop sends the painted picture to the display before it reaches the timer.
        mTimer.start(std::chrono::milliseconds(0));
    }
    return false;
}
