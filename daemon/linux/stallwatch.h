// SPDX-License-Identifier: MIT
// Ends the process when its thread does not come back to its event loop: with the process, the kernel gives the grabbed
// keyboards back. Lives on the thread that it watches and may be used on no other; one instance a process.
#pragma once

#include <QObject>

#include <chrono>
#include <ctime>
#include <optional>

/// The time runs from the beginning of an event until the event loop waits again; while it waits nothing runs, and the
/// watch wakes nobody. At its end a signal interrupts the thread, wherever it is, and the process exits at once.
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

    /// Also watches what this object and its children do with their events. An event dispatcher tells when it awakes,
    /// but some only after the files and timers have had their turn.
    void watch(QObject *object);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void arm();
    void disarm();
    void setTimer(std::chrono::milliseconds limit);

    std::chrono::milliseconds mLimit;
    std::optional<timer_t> mTimer;
    std::chrono::steady_clock::time_point mArmedAt;
    bool mIsArmed = false;
};
