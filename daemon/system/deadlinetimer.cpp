// SPDX-License-Identifier: MIT
#include "daemon/system/deadlinetimer.h"

#include <QSocketNotifier>

#include <algorithm>
#include <sys/timerfd.h>
#include <unistd.h>

using namespace std::chrono_literals;

DeadlineTimer::DeadlineTimer(QObject *parent)
    : QObject(parent), mTimer(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))
{
    if (mTimer < 0)
        return;
    auto *notifier = new QSocketNotifier(mTimer, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &DeadlineTimer::expire);
}

DeadlineTimer::~DeadlineTimer()
{
    if (mTimer >= 0)
        ::close(mTimer);
}

DeadlineTimer::Time DeadlineTimer::now()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::duration_cast<Time>(std::chrono::nanoseconds(time.tv_nsec));
}

void DeadlineTimer::setDeadline(std::optional<Time> deadline)
{
    if (mTimer < 0)
        return;
    itimerspec spec{};
    if (deadline) {
        const Time moment = std::max(*deadline, Time(1us)); // zero would disarm the timer
        const auto whole = std::chrono::duration_cast<std::chrono::seconds>(moment);
        spec.it_value.tv_sec = whole.count();
        spec.it_value.tv_nsec = std::chrono::nanoseconds(moment - whole).count();
    }
    ::timerfd_settime(mTimer, TFD_TIMER_ABSTIME, &spec, nullptr);
}

void DeadlineTimer::expire()
{
    quint64 expirations = 0;
    // The read fails if the deadline was replaced after the event loop had seen the old one.
    if (::read(mTimer, &expirations, sizeof expirations) == sizeof expirations)
        Q_EMIT reached();
}
