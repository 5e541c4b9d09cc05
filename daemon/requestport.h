// SPDX-License-Identifier: MIT
// The daemon's request port, on a thread of its own, so that the age of a message counts from when it came and not from
// when the daemon has time for it. Owned by the daemon's process and used on its main thread.
#pragma once

#include "base/status.h"
#include "daemon/requestmessage.h"
#include "daemon/system/bootclock.h"

#include <QDBusConnection>
#include <QThread>

#include <chrono>
#include <functional>
#include <future>

/// Takes each message at once. A message that is accepted is answered with nothing. One that is refused is answered
/// with the reply that says so, which also goes to its reply port. A message that waited in the socket while the
/// process stood still (stopped, frozen, the machine asleep) has no time. That the process stood still is known by
/// SIGCONT and, for 20 seconds after each message, by a tick that comes late. A daemon without requests is not woken by
/// ticks.
class RequestPort : public QThread
{
    Q_OBJECT

public:
    /// What tests replace.
    struct Clock
    {
        std::function<std::chrono::microseconds()> now = timeSinceBoot; ///< called on the port's thread
        std::chrono::milliseconds tick{1000};
    };

    /// Called on the port's thread for each message; `sender` is a name of the bus. Status::ok accepts the message.
    using Take = std::function<Status(const QString &sender, const RequestMessage &message)>;

    /// The reply port of a refused message with more data is not looked up: this thread must not be busy.
    static constexpr qsizetype maximumRefusedBytes = 64 * 1024;

    /// A gap as long as this between two signs of life means that the process stood still.
    static constexpr std::chrono::seconds standstill{5};

    RequestPort(const QDBusConnection &bus, Take take);
    RequestPort(const QDBusConnection &bus, Take take, Clock clock);
    ~RequestPort() override;

    /// Starts to serve, and returns when the port is on the bus. False when its name is taken.
    [[nodiscard]] bool serve();

protected:
    void run() override;

private:
    QDBusConnection mBus;
    Take mTake;
    Clock mClock;
    std::promise<bool> mIsServing;
    std::promise<void> mHasEnded;
};
