// SPDX-License-Identifier: MIT
// Keeps the real-time priority of a thread, as far as the system grants it. Owned by the KeyThread; main thread only.
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

/// Requests the priority at the start and again later while the thread does not have it, with growing pauses.
class RealtimeKeeper : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        std::function<bool()> isRealTime; ///< whether the thread has the priority at this moment
        /// Requests it, and calls the argument with the answer, at once or later.
        std::function<void(const std::function<void()> &answered)> request;
    };

    static constexpr std::chrono::milliseconds usualFirstPause = std::chrono::seconds(30);
    static constexpr std::chrono::milliseconds longestPause = std::chrono::minutes(10);

    explicit RealtimeKeeper(Services services, std::chrono::milliseconds firstPause = usualFirstPause,
                            QObject *parent = nullptr);

    void start();
    [[nodiscard]] std::chrono::milliseconds nextPause() const { return mPause; }

Q_SIGNALS:
    /// The first result, and each change that was noticed later.
    void found(bool isRealTime);

private:
    void check();
    void report();

    Services mServices;
    QTimer mTimer;
    std::chrono::milliseconds mPause;
    bool mIsKnown = false;
    bool mIsRealTime = false; // as last reported
};
