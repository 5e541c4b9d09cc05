// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/epolldispatcher.h"

#include "daemon/keyboards/linux/readnotifier.h"
#include "daemon/keyboards/linux/stallwatch.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimerEvent>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>

using namespace std::chrono_literals;

namespace {

constexpr std::size_t usualCount = 64; // of files, of timers
constexpr std::size_t filesAtOnce = 16;

/// With the descriptor in the data of an event: only a ReadNotifier watches the file.
constexpr quint64 directMark = quint64(1) << 32;

int descriptorOf(const epoll_event &event)
{
    return static_cast<int>(event.data.u64 & (directMark - 1));
}

bool isDirect(const epoll_event &event)
{
    return event.data.u64 & directMark;
}

/// The events that wake a notifier. Errors and ends always do; reading or writing then reveals which.
unsigned int eventsOf(QSocketNotifier::Type type)
{
    switch (type) {
    case QSocketNotifier::Read: return EPOLLIN;
    case QSocketNotifier::Write: return EPOLLOUT;
    case QSocketNotifier::Exception: return EPOLLPRI;
    }
    return 0;
}

} // namespace

EpollDispatcher::EpollDispatcher(QObject *parent)
    : QAbstractEventDispatcher(parent), mEpoll(::epoll_create1(EPOLL_CLOEXEC)),
      mWakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    epoll_event event = {.events = EPOLLIN, .data = {.u64 = static_cast<quint64>(mWakeUp)}};
    if (mEpoll < 0 || mWakeUp < 0 || ::epoll_ctl(mEpoll, EPOLL_CTL_ADD, mWakeUp, &event) != 0)
        qFatal("EpollDispatcher: %s", qUtf8Printable(qt_error_string(errno))); // as in Qt's own dispatcher
    mNotifiers.reserve(usualCount);
    mTimers.reserve(usualCount);
    EpollDispatcher::wakeUp(); // for events posted before there was a dispatcher
}

EpollDispatcher::~EpollDispatcher()
{
    (void)mIsWoken.exchange(true); // synchronises with the last thread that has interrupted this one
    ::close(mWakeUp);
    ::close(mEpoll);
}

bool EpollDispatcher::processEvents(QEventLoop::ProcessEventsFlags flags)
{
    mIsInterrupted = false; // the interrupted loop has seen it
    const bool mayWait = flags.testFlag(QEventLoop::WaitForMoreEvents);
    if (mayWait)
        Q_EMIT aboutToBlock();
    std::array<epoll_event, filesAtOnce> buffer;
    std::span<const epoll_event> events;
    bool hasDone = false;
    for (;;) {
        if (mayWait && mWatch)
            mWatch->disarm();
        events = wait(buffer, mayWait);
        if (!mayWait || !mTimers.empty() || events.empty() || !std::ranges::all_of(events, isDirect))
            break;
        if (mWatch)
            mWatch->arm();
        for (const epoll_event &event : events)
            callDirect(descriptorOf(event));
        hasDone = true;
    }
    Q_EMIT awake();
    if (mWatch)
        mWatch->arm();

    for (const epoll_event &event : events) {
        if (mIsInterrupted) {
            if (isDirect(event))
                watch(descriptorOf(event)); // the kernel would not report it again
        } else if (descriptorOf(event) == mWakeUp) {
            sendPosted();
            hasDone = true;
        } else {
            hasDone = activateNotifiers(descriptorOf(event), event.events) || hasDone;
        }
    }
    return fireTimers() || hasDone;
}

/// The events until the next timer; none without waiting if there are none now.
std::span<const epoll_event> EpollDispatcher::wait(std::span<epoll_event> buffer, bool mayWait) const
{
    int count = 0;
    do {
        count = ::epoll_wait(mEpoll, buffer.data(), static_cast<int>(buffer.size()), mayWait ? timeUntilTimer() : 0);
    } while (count < 0 && errno == EINTR);
    return buffer.first(static_cast<std::size_t>(std::max(count, 0)));
}

void EpollDispatcher::sendPosted()
{
    quint64 wakes = 0;
    [[maybe_unused]] const ssize_t size = ::read(mWakeUp, &wakes, sizeof wakes);
    // Later events wake it again, and everything done before a wake-up is visible from here on.
    (void)mIsWoken.exchange(false);
    QCoreApplication::sendPostedEvents();
}

void EpollDispatcher::callDirect(int descriptor)
{
    // Looked up each time: a handler may have disabled or destroyed others.
    for (const Notifier &each : mNotifiers) {
        if (each.direct && each.descriptor == descriptor)
            return each.direct->callHandler();
    }
}

bool EpollDispatcher::activateNotifiers(int descriptor, unsigned int events)
{
    bool hasTold = false;
    for (const auto type : {QSocketNotifier::Read, QSocketNotifier::Write, QSocketNotifier::Exception}) {
        if (!(events & (eventsOf(type) | EPOLLERR | EPOLLHUP)))
            continue;
        // Looked up each time: a handler may have disabled or destroyed others.
        const auto found = std::ranges::find_if(mNotifiers, [descriptor, type](const Notifier &each) {
            return each.descriptor == descriptor && each.notifier->type() == type;
        });
        if (found == mNotifiers.end())
            continue;
        QEvent event(QEvent::SockAct);
        QCoreApplication::sendEvent(found->notifier, &event);
        hasTold = true;
    }
    return hasTold;
}

void EpollDispatcher::registerSocketNotifier(QSocketNotifier *notifier)
{
    mNotifiers.push_back({.descriptor = static_cast<int>(notifier->socket()),
                          .notifier = notifier,
                          .direct = qobject_cast<ReadNotifier *>(notifier)});
    watch(static_cast<int>(notifier->socket()));
}

void EpollDispatcher::unregisterSocketNotifier(QSocketNotifier *notifier)
{
    if (std::erase_if(mNotifiers, [notifier](const Notifier &each) { return each.notifier == notifier; }) > 0)
        watch(static_cast<int>(notifier->socket()));
}

/// Watches for the events that its notifiers want now.
void EpollDispatcher::watch(int descriptor)
{
    // A file of handlers alone is reported once for each change. Otherwise the kernel would look at it again before
    // each wait.
    epoll_event event = {.events = EPOLLET, .data = {.u64 = static_cast<quint64>(descriptor) | directMark}};
    bool isWanted = false;
    for (const Notifier &each : mNotifiers) {
        if (each.descriptor != descriptor)
            continue;
        isWanted = true;
        event.events |= eventsOf(each.notifier->type());
        if (!each.direct) {
            event.events &= ~EPOLLET;
            event.data.u64 &= ~directMark;
        }
    }
    // The kernel stops watching a closed file, whose number may now belong to another one.
    if (!isWanted)
        ::epoll_ctl(mEpoll, EPOLL_CTL_DEL, descriptor, nullptr);
    else if (::epoll_ctl(mEpoll, EPOLL_CTL_MOD, descriptor, &event) != 0
             && ::epoll_ctl(mEpoll, EPOLL_CTL_ADD, descriptor, &event) != 0)
        qWarning("EpollDispatcher: file %d cannot be watched: %s", descriptor, qUtf8Printable(qt_error_string(errno)));
}

// Timers

void EpollDispatcher::registerTimer(int id, qint64 intervalMs, Qt::TimerType type, QObject *object)
{
    const std::chrono::milliseconds interval(intervalMs);
    mTimers.push_back({.id = id, .interval = interval, .type = type, .object = object, .due = Clock::now() + interval});
}

bool EpollDispatcher::unregisterTimer(int id)
{
    return std::erase_if(mTimers, [id](const Timer &timer) { return timer.id == id; }) > 0;
}

bool EpollDispatcher::unregisterTimers(QObject *object)
{
    return std::erase_if(mTimers, [object](const Timer &timer) { return timer.object == object; }) > 0;
}

QList<EpollDispatcher::TimerInfo> EpollDispatcher::registeredTimers(QObject *object) const
{
    QList<TimerInfo> infos;
    for (const Timer &timer : mTimers) {
        if (timer.object == object)
            infos += TimerInfo(timer.id, static_cast<int>(timer.interval.count()), timer.type);
    }
    return infos;
}

int EpollDispatcher::remainingTime(int id)
{
    const Timer *found = timer(id);
    if (!found)
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(found->due - Clock::now());
    return static_cast<int>(std::max(left, 0ms).count());
}

EpollDispatcher::Timer *EpollDispatcher::timer(int id)
{
    const auto found = std::ranges::find(mTimers, id, &Timer::id);
    return found == mTimers.end() ? nullptr : &*found;
}

/// In milliseconds; -1: there is no timer.
int EpollDispatcher::timeUntilTimer() const
{
    const auto next = std::ranges::min_element(mTimers, {}, &Timer::due);
    if (next == mTimers.end())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next->due - Clock::now());
    return static_cast<int>(std::clamp<qint64>(left.count(), 0, std::numeric_limits<int>::max()));
}

bool EpollDispatcher::fireTimers()
{
    if (mTimers.empty())
        return false;
    bool hasTold = false;
    // Each timer that is due now, once. A timer started meanwhile waits for the next round.
    const Clock::time_point now = Clock::now();
    for (;;) {
        const auto next = std::ranges::min_element(mTimers, {}, [now](const Timer &timer) {
            return timer.isFiring || timer.due > now ? Clock::time_point::max() : timer.due;
        });
        if (next == mTimers.end() || next->isFiring || next->due > now)
            break;
        const int id = next->id;
        next->due = std::max(next->due + next->interval, now);
        next->isFiring = true;
        QTimerEvent event(id);
        QCoreApplication::sendEvent(next->object, &event);
        hasTold = true;
    }
    for (Timer &timer : mTimers)
        timer.isFiring = false;
    return hasTold;
}

// Other threads

void EpollDispatcher::wakeUp()
{
    if (mIsWoken.exchange(true))
        return;
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t size = ::write(mWakeUp, &one, sizeof one); // if full, it is awake anyway
}

void EpollDispatcher::interrupt()
{
    mIsInterrupted = true;
    wakeUp();
}
