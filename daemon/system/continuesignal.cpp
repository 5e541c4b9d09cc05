// SPDX-License-Identifier: MIT
#include "daemon/system/continuesignal.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

// Few functions are safe in a signal handler. This one sets the flag and wakes the event loop through the event file.
std::atomic<bool> hasContinued = false;
int eventFile = -1;

static_assert(std::atomic<bool>::is_always_lock_free);

void noteSignal(int)
{
    const int interruptedErrno = errno;
    hasContinued.store(true);
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t written = ::write(eventFile, &one, sizeof one);
    errno = interruptedErrno;
}

void maskSignal(int how)
{
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, SIGCONT);
    ::pthread_sigmask(how, &set, nullptr);
}

} // namespace

ContinueSignal::ContinueSignal(QObject *parent) : QObject(parent)
{
    eventFile = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (eventFile < 0)
        return;
    auto *notifier = new QSocketNotifier(eventFile, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &ContinueSignal::drain);
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGCONT, &action, nullptr);
    maskSignal(SIG_UNBLOCK);
}

ContinueSignal::~ContinueSignal()
{
    if (eventFile < 0)
        return;
    maskSignal(SIG_BLOCK);
    std::signal(SIGCONT, SIG_DFL);
    ::close(eventFile);
    eventFile = -1;
}

void ContinueSignal::block()
{
    maskSignal(SIG_BLOCK);
}

bool ContinueSignal::take()
{
    return hasContinued.exchange(false);
}

void ContinueSignal::drain()
{
    quint64 count = 0;
    if (::read(eventFile, &count, sizeof count) == sizeof count)
        Q_EMIT received();
}
