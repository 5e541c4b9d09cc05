// SPDX-License-Identifier: MIT
// Ends the process if its thread does not return to the event loop; the kernel then ungrabs the keyboards. Lives on the
// thread that it watches and must be used on that thread only. A process has one instance.
#pragma once

#include <QPointer>

#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <optional>

class EpollDispatcher;

/// Measures the time from the event loop's wake-up until it waits again, without a system call. A timer checks a few
/// times within the limit whether the thread has been awake since the last check. If it finds the thread waiting, it
/// stops, so it wakes a sleeping thread only once after its last event. The process ends one limit to 1.25 limits after
/// the stall begins: a signal interrupts the thread wherever it is, and the process exits at once. The thread's
/// dispatcher must be an EpollDispatcher, which arms and disarms it.
class StallWatch
{
public:
    static constexpr std::chrono::milliseconds usualLimit{2000};
    static constexpr int exitCode = 5; ///< of the process; no other end of the daemon has it

    explicit StallWatch(std::chrono::milliseconds limit = usualLimit);
    ~StallWatch();
    StallWatch(const StallWatch &) = delete;
    StallWatch &operator=(const StallWatch &) = delete;

    /// False if the system provided no timer; it then watches nothing.
    [[nodiscard]] bool isUsable() const { return mTimer.has_value(); }

    void arm();    ///< the thread has woken up
    void disarm(); ///< the thread is about to wait

private:
    static constexpr int looksWithinLimit = 4;

    static void look(int signal, siginfo_t *info, void *context);
    [[nodiscard]] std::optional<timer_t> makeTimer();
    void startLooking();
    void lookLater();

    QPointer<EpollDispatcher> mDispatcher;
    itimerspec mInterval = {};
    std::optional<timer_t> mTimer;

    // Used only by the thread and by the signal handler that interrupts it.
    std::atomic<bool> mIsBusy = false;
    std::atomic<bool> mIsLooking = false; // the timer runs
    std::atomic<unsigned int> mAwakenings = 0;
    // Used by the handler alone, except while the timer is stopped.
    unsigned int mAwakeningsSeen = 0;
    int mLooks = 0; // since the last change of mAwakeningsSeen
};

inline void StallWatch::arm()
{
    // There is only one writer, so plain loads and stores suffice; the fence orders them for the handler.
    mAwakenings.store(mAwakenings.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    mIsBusy.store(true, std::memory_order_relaxed);
    std::atomic_signal_fence(std::memory_order_seq_cst);
    if (!mIsLooking.load(std::memory_order_relaxed) && mTimer)
        startLooking();
}

inline void StallWatch::disarm()
{
    mIsBusy.store(false, std::memory_order_relaxed);
}
