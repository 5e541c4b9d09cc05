// SPDX-License-Identifier: MIT
// Waits until a window is on the screen. Deletes itself when it has called its function. Main thread only.
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

class QWidget;

class AfterPainting : public QObject
{
    Q_OBJECT

public:
    /// Calls `function` once, from the event loop, when `window` has been painted the next time while it was exposed,
    /// and the picture was sent to the display. A window that is not exposed, such as one that starts minimized, is not
    /// painted; therefore `function` is called after `limit` at the latest.
    AfterPainting(QWidget *window, std::function<void()> function,
                  std::chrono::milliseconds limit = std::chrono::seconds(3));

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> mFunction;
    QTimer mTimer; ///< runs until the limit, or until the event loop has come round
};
