// SPDX-License-Identifier: MIT
// A timer with microsecond precision. Qt's own timers count whole milliseconds from now, which would put the events of
// a macro up to a millisecond off. Any thread with an event loop; use an instance only on its own thread.
#pragma once

#include <QObject>

#include <chrono>
#include <optional>

class DeadlineTimer : public QObject
{
    Q_OBJECT

public:
    using Time = std::chrono::microseconds; // since the machine was started, without the time that it slept

    explicit DeadlineTimer(QObject *parent = nullptr);
    ~DeadlineTimer() override;

    /// False when the system provided no timer. The timer then never signals.
    [[nodiscard]] bool isUsable() const { return mTimer >= 0; }

    [[nodiscard]] static Time now();

    /// Replaces the deadline; an absent one cancels it. A deadline in the past is reached in the next round of the
    /// event loop.
    void setDeadline(std::optional<Time> deadline);

Q_SIGNALS:
    void reached(); ///< once for each deadline

private:
    void expire();

    int mTimer = -1; // file descriptor
};
