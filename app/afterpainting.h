// SPDX-License-Identifier: MIT
// Calls a function when a window is on the screen, then deletes itself. Main thread only.
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

class QWidget;

class AfterPainting : public QObject
{
    Q_OBJECT

public:
    /// Calls `function` once, from the event loop, after the next painting of the exposed `window` has been sent to the
    /// display. A window that is not exposed, such as one that starts minimized, is not painted. Therefore `function`
    /// is called after `limit` at the latest.
    AfterPainting(QWidget *window, std::function<void()> function,
                  std::chrono::milliseconds limit = std::chrono::seconds(3));

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> mFunction;
    QTimer mTimer; ///< runs until the limit or, after the painting, until the next round of the event loop
};
