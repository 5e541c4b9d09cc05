// SPDX-License-Identifier: MIT
// Ends the process when its thread does not come back to its event loop: with the process, the kernel gives the grabbed
// keyboards back. Lives on the thread that it watches and may be used on no other; one instance a process.
#pragma once

#include <QObject>

#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <optional>

/// The time runs from when the event loop awakes until it waits again. That costs no call of the system: a timer that
/// runs already looks, a few times within the limit, whether the thread is awake since it last looked. It stops by
/// itself when it finds the thread waiting, so that who sleeps is woken once after its last event, and no more. The
/// process ends between one limit and a quarter more after the beginning of what stalls: a signal interrupts the
/// thread, wherever it is, and the process exits at once. The thread's dispatcher must tell that it awakes before
/// anything has its turn, as EpollDispatcher does.
class StallWatch : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds usualLimit{2000};
    static constexpr int exitCode = 5; ///< of the process; nothing else that ends the daemon has it

    explicit StallWatch(std::chrono::milliseconds limit = usualLimit, QObject *parent = nullptr);
    ~StallWatch() override;

    /// False when the system gave no timer; it watches nothing then.
    [[nodiscard]] bool isUsable() const { return mTimer.has_value(); }

private:
    static constexpr int looksWithinLimit = 4;

    static void look(int signal, siginfo_t *info, void *context);
    [[nodiscard]] std::optional<timer_t> makeTimer();
    void arm();
    void disarm();
    void lookLater();

    itimerspec mInterval = {};
    std::optional<timer_t> mTimer;

    // The signal handler interrupts the thread that uses them, no other has them.
    std::atomic<bool> mIsBusy = false;
    std::atomic<bool> mIsLooking = false; // the timer runs
    std::atomic<unsigned int> mAwakenings = 0;
    // The handler's own, but while the timer stands still.
    unsigned int mAwakeningsSeen = 0;
    int mLooks = 0; // since it has seen the last of them
};
