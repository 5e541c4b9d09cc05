// SPDX-License-Identifier: MIT
// The event loop of the key thread. Created on any thread, then the dispatcher of one; any thread may call wakeUp() and
// interrupt().
#pragma once

#include <QAbstractEventDispatcher>

#include <atomic>
#include <chrono>
#include <span>
#include <vector>

class ReadNotifier;
class StallWatch;
struct epoll_event;

/// Replaces Qt's own dispatcher, because a key then takes a third of the instructions: waiting allocates nothing, many
/// files cost no more than one, and a ReadNotifier is called directly. While only such notifiers have something to do,
/// and there is no timer, it does not leave processEvents() in between, and emits neither awake() nor aboutToBlock().
/// The watch covers all handlers. Timers are always precise; it ignores QEventLoop's exclusion of files.
class EpollDispatcher : public QAbstractEventDispatcher
{
    Q_OBJECT

public:
    explicit EpollDispatcher(QObject *parent = nullptr);
    ~EpollDispatcher() override;

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;

    void registerSocketNotifier(QSocketNotifier *notifier) override;
    void unregisterSocketNotifier(QSocketNotifier *notifier) override;

    void registerTimer(int id, qint64 intervalMs, Qt::TimerType type, QObject *object) override;
    bool unregisterTimer(int id) override;
    bool unregisterTimers(QObject *object) override;
    [[nodiscard]] QList<TimerInfo> registeredTimers(QObject *object) const override;
    [[nodiscard]] int remainingTime(int id) override; ///< in milliseconds; -1: there is no such timer

    /// `watch` is armed before any handler runs, and disarmed before the thread waits. Null for none. Must be called on
    /// the dispatcher's thread.
    void setWatch(StallWatch *watch) { mWatch = watch; }

    void wakeUp() override;
    void interrupt() override;

private:
    using Clock = std::chrono::steady_clock;

    struct Notifier
    {
        int descriptor = -1;
        QSocketNotifier *notifier = nullptr;
        ReadNotifier *direct = nullptr; // the same, or null
    };

    struct Timer
    {
        int id = 0;
        std::chrono::milliseconds interval{};
        Qt::TimerType type = Qt::PreciseTimer;
        QObject *object = nullptr;
        Clock::time_point due;
        bool isFiring = false; // in this round; prevents a recursive second call
    };

    [[nodiscard]] int timeUntilTimer() const;
    [[nodiscard]] Timer *timer(int id);
    [[nodiscard]] std::span<const epoll_event> wait(std::span<epoll_event> buffer, bool mayWait) const;
    void watch(int descriptor);
    void sendPosted();
    bool activateNotifiers(int descriptor, unsigned int events);
    void callDirect(int descriptor);
    bool fireTimers();

    int mEpoll;
    int mWakeUp; // an eventfd
    StallWatch *mWatch = nullptr;
    std::vector<Notifier> mNotifiers;
    std::vector<Timer> mTimers;
    std::atomic<bool> mIsWoken = false; // mWakeUp is readable or about to be
    std::atomic<bool> mIsInterrupted = false;
};
