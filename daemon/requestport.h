// SPDX-License-Identifier: MIT
// The daemon's request port, on a thread of its own, so that the age of a message counts from when it came and not from
// when the daemon has time for it. Owned by the daemon's process and used on its main thread.
#pragma once

#include "daemon/requestmessage.h"
#include "daemon/system/bootclock.h"

#include <QDBusConnection>
#include <QThread>

#include <chrono>
#include <functional>
#include <future>

/// Takes each message at once and answers it with nothing. A message that waited in the socket while the process stood
/// still (stopped, frozen, the machine asleep) has no time. That the process stood still is known by SIGCONT and, for
/// 20 seconds after each message, by a tick that comes late. A daemon without requests is not woken by ticks.
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

    /// Called on the port's thread for each message.
    using Take = std::function<void(const RequestMessage &message)>;

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
