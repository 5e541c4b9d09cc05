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
    // The first painting comes with the window's exposure, every other by a request of the window's own. Before it is
    // exposed, what is painted is not seen.
    const bool isPainting = event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint;
    const QWindow *window = static_cast<QWidget *>(watched)->windowHandle();
    if (isPainting && window && window->isExposed()) {
        watched->removeEventFilter(this);
        // Before it comes to the timer, the event loop sends to the display what was painted.
        mTimer.start(std::chrono::milliseconds(0));
    }
    return false;
}
