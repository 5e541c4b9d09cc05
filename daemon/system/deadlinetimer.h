// SPDX-License-Identifier: MIT
// Tells when a moment has come, by the microsecond. Qt's own timers count whole milliseconds from now, which would put
// the events of a macro up to a millisecond off. Any thread with an event loop; each instance its own.
#pragma once

#include <QObject>

#include <chrono>
#include <optional>

class DeadlineTimer : public QObject
{
    Q_OBJECT

public:
    using Time = std::chrono::microseconds; // since the machine was started; stands still while it sleeps

    explicit DeadlineTimer(QObject *parent = nullptr);
    ~DeadlineTimer() override;

    /// False when the system gave none; it never tells anything then.
    [[nodiscard]] bool isUsable() const { return mTimer >= 0; }

    [[nodiscard]] static Time now();

    /// Replaces the deadline; absent: none. One that is past is reached in the next round of the event loop.
    void setDeadline(std::optional<Time> deadline);

Q_SIGNALS:
    void reached(); ///< once for each deadline

private:
    void expire();

    int mTimer = -1; // file descriptor
};
