// SPDX-License-Identifier: MIT
// The daemon's request port. Its own thread notes when each message arrives, even while the main thread is busy. Owned
// by the RequestTurns; main thread only.
#pragma once

#include "base/status.h"
#include "daemon/requestmessage.h"
#include "daemon/system/bootclock.h"

#include <QDBusConnection>
#include <QThread>

#include <chrono>
#include <functional>
#include <future>

/// Takes each message at once. The answer to an accepted message is empty. The answer to a refused one is the reply
/// with the reason, which also goes to its reply port. A message has no time if it waited in the socket while the
/// process stood still (stopped, frozen, the machine asleep). Two signs reveal such a standstill: SIGCONT and, for 20
/// seconds after each message, a late tick. Ticks do not wake a daemon that gets no requests.
class RequestPort : public QThread
{
    Q_OBJECT

public:
    /// Test seams.
    struct Clock
    {
        std::function<std::chrono::microseconds()> now = timeSinceBoot; ///< called on the port's thread
        std::chrono::milliseconds tick{1000};
    };

    /// Called on the port's thread for each message; `sender` is a name of the bus. Status::ok accepts the message.
    using Take = std::function<Status(const QString &sender, const RequestMessage &message)>;

    /// The reply port of a larger refused message is not looked up, because this thread must not be busy.
    static constexpr qsizetype maximumRefusedBytes = 256 * 1024;

    /// A longer gap between two signs of life means that the process stood still.
    static constexpr std::chrono::seconds standstill{5};

    RequestPort(const QDBusConnection &bus, Take take);
    RequestPort(const QDBusConnection &bus, Take take, Clock clock);
    ~RequestPort() override;

    /// Starts to serve; returns once the port is on the bus. False if its name is taken.
    [[nodiscard]] bool serve();

protected:
    void run() override;

private:
    void serveUntilQuit();

    QDBusConnection mBus;
    Take mTake;
    Clock mClock;
    std::promise<bool> mIsServing;
    std::promise<void> mHasEnded;
};
