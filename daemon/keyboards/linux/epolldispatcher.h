// SPDX-License-Identifier: MIT
// The event loop of the key thread. Made on any thread, then the dispatcher of one; wakeUp() and interrupt() may be
// called on any.
#pragma once

#include <QAbstractEventDispatcher>

#include <atomic>
#include <chrono>
#include <vector>

/// Does what Qt's own does; but a key takes half the instructions: nothing is made anew for a wait, and a wait costs no
/// more with many files than with one. And it tells that it awakes before anything has its turn, so that
/// a watch sees all of it. Timers are precise whatever they ask for; QEventLoop's exclusion of files is not heeded.
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
        bool isTold = false; // just now; not again from within
    };

    [[nodiscard]] int timeUntilTimer() const;
    [[nodiscard]] Timer *timer(int id);
    void watch(int descriptor);
    void sendPosted();
    bool tellNotifiers(int descriptor, unsigned int events);
    bool tellTimers();

    int mEpoll;
    int mWakeUp; // an eventfd
    std::vector<QSocketNotifier *> mNotifiers;
    std::vector<Timer> mTimers;
    std::atomic<bool> mIsWoken = false; // mWakeUp is readable, or will be at once
    std::atomic<bool> mIsInterrupted = false;
};
