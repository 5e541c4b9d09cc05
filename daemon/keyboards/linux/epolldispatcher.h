// SPDX-License-Identifier: MIT
// The event loop of the key thread. Created on any thread, then the dispatcher of one; any thread may call wakeUp() and
// interrupt().
#pragma once

#include <QAbstractEventDispatcher>

#include <atomic>
#include <chrono>
#include <vector>

/// Replaces Qt's own dispatcher, because a key then takes half the instructions: waiting allocates nothing, and many
/// files cost no more than one. It also emits awake() before any event is handled, so a watch covers all handlers.
/// Timers are always precise; it ignores QEventLoop's exclusion of files.
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

    void wakeUp() override;
    void interrupt() override;

private:
    using Clock = std::chrono::steady_clock;

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
    void watch(int descriptor);
    void sendPosted();
    bool activateNotifiers(int descriptor, unsigned int events);
    bool fireTimers();

    int mEpoll;
    int mWakeUp; // an eventfd
    std::vector<QSocketNotifier *> mNotifiers;
    std::vector<Timer> mTimers;
    std::atomic<bool> mIsWoken = false; // mWakeUp is readable or about to be
    std::atomic<bool> mIsInterrupted = false;
};
