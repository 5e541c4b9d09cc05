// SPDX-License-Identifier: MIT
#include "daemon/linux/stallwatch.h"

#include <QAbstractEventDispatcher>

#include <algorithm>
#include <csignal>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr int stallSignal = SIGALRM;

/// Runs in the middle of whatever the thread was doing: only what a signal handler may.
extern "C" void endStalledProcess(int)
{
    constexpr std::string_view text("kestra.keyboard critical: daemon: the key thread does not come back, ending\n");
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
    ::_exit(StallWatch::exitCode);
}

std::optional<timer_t> makeTimer()
{
    struct sigaction action = {};
    action.sa_handler = endStalledProcess;
    if (::sigaction(stallSignal, &action, nullptr) != 0)
        return {};
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, stallSignal);
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);

    // To this very thread: another one might never get the processor while this one keeps it with real-time priority.
    sigevent event = {};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = stallSignal;
#ifdef sigev_notify_thread_id
    event.sigev_notify_thread_id = static_cast<pid_t>(::syscall(SYS_gettid));
#else
    event._sigev_un._tid = static_cast<pid_t>(::syscall(SYS_gettid)); // C libraries before 2.38 have no name for it
#endif
    timer_t timer = {};
    return ::timer_create(CLOCK_MONOTONIC, &event, &timer) == 0 ? std::optional(timer) : std::nullopt;
}

} // namespace

StallWatch::StallWatch(std::chrono::milliseconds limit, QObject *parent)
    : QObject(parent), mLimit(limit), mTimer(makeTimer())
{
    QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    if (!mTimer || !dispatcher)
        return;
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, &StallWatch::arm);
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &StallWatch::disarm);
}

StallWatch::~StallWatch()
{
    if (mTimer)
        ::timer_delete(*mTimer);
}

void StallWatch::watch(QObject *object)
{
    object->installEventFilter(this);
    for (QObject *child : object->findChildren<QObject *>())
        child->installEventFilter(this);
}

bool StallWatch::eventFilter(QObject *, QEvent *)
{
    arm();
    return false;
}

void StallWatch::arm()
{
    const auto now = std::chrono::steady_clock::now();
    if (mIsArmed && now - mArmedAt < mLimit / 8) // several events at a time need but one call of the system
        return;
    mIsArmed = true;
    mArmedAt = now;
    setTimer(mLimit);
}

void StallWatch::disarm()
{
    if (std::exchange(mIsArmed, false))
        setTimer(0ms);
}

void StallWatch::setTimer(std::chrono::milliseconds limit)
{
    if (!mTimer)
        return;
    const auto whole = std::chrono::duration_cast<std::chrono::seconds>(limit);
    itimerspec spec = {};
    spec.it_value.tv_sec = whole.count();
    spec.it_value.tv_nsec = std::chrono::nanoseconds(limit - whole).count();
    ::timer_settime(*mTimer, 0, &spec, nullptr);
}
