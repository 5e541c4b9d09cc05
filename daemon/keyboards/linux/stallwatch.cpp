// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/stallwatch.h"

#include "daemon/keyboards/linux/epolldispatcher.h"

#include <cerrno>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int stallSignal = SIGALRM;

static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<unsigned int>::is_always_lock_free);

} // namespace

StallWatch::StallWatch(std::chrono::milliseconds limit)
    : mDispatcher(qobject_cast<EpollDispatcher *>(QAbstractEventDispatcher::instance()))
{
    const std::chrono::nanoseconds interval = std::chrono::nanoseconds(limit) / looksWithinLimit;
    const auto whole = std::chrono::duration_cast<std::chrono::seconds>(interval);
    mInterval.it_value.tv_sec = whole.count();
    mInterval.it_value.tv_nsec = (interval - whole).count();
    if (!mDispatcher)
        return;
    mTimer = makeTimer();
    mDispatcher->setWatch(this);
}

StallWatch::~StallWatch()
{
    if (mDispatcher)
        mDispatcher->setWatch(nullptr);
    if (mTimer)
        ::timer_delete(*mTimer); // a pending signal arrives before this returns
}

std::optional<timer_t> StallWatch::makeTimer()
{
    struct sigaction action = {};
    action.sa_sigaction = look;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    if (::sigaction(stallSignal, &action, nullptr) != 0)
        return {};
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, stallSignal);
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);

    // The signal goes to this very thread: another one might not get the processor while this one keeps it in real
    // time.
    sigevent event = {};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = stallSignal;
    event.sigev_value.sival_ptr = this;
#ifdef sigev_notify_thread_id
    event.sigev_notify_thread_id = static_cast<pid_t>(::syscall(SYS_gettid));
#else
    event._sigev_un._tid = static_cast<pid_t>(::syscall(SYS_gettid)); // C libraries before 2.38 have no name for it
#endif
    timer_t timer = {};
    return ::timer_create(CLOCK_MONOTONIC, &event, &timer) == 0 ? std::optional(timer) : std::nullopt;
}

void StallWatch::startLooking()
{
    mAwakeningsSeen = mAwakenings.load(std::memory_order_relaxed);
    mLooks = 0;
    mIsLooking.store(true, std::memory_order_relaxed);
    lookLater();
}

void StallWatch::lookLater()
{
    ::timer_settime(*mTimer, 0, &mInterval, nullptr);
}

/// Interrupts the thread at any point: only calls that are safe in a signal handler.
void StallWatch::look(int, siginfo_t *info, void *)
{
    if (info->si_code != SI_TIMER) // another program's signal
        return;
    auto &self = *static_cast<StallWatch *>(info->si_value.sival_ptr);
    if (!self.mIsBusy.load(std::memory_order_relaxed)) {
        self.mIsLooking.store(false, std::memory_order_relaxed);
        return;
    }
    const unsigned int awakenings = self.mAwakenings.load(std::memory_order_relaxed);
    self.mLooks = awakenings == self.mAwakeningsSeen ? self.mLooks + 1 : 0;
    self.mAwakeningsSeen = awakenings;
    if (self.mLooks == looksWithinLimit) {
        constexpr std::string_view text("kestra.keyboard critical: daemon: the key thread is stuck, ending\n");
        [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        ::_exit(exitCode);
    }
    const int error = errno;
    self.lookLater();
    errno = error;
}
