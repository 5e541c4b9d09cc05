// SPDX-License-Identifier: MIT
#include "daemon/keyboards/macrotries.h"

#include "daemon/engine/playablemacro.h"
#include "daemon/system/deadlinetimer.h"
#include "keys/keymapping.h"
#include "macros/macrorecord.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool isRepeatMode(int repeat)
{
    return std::ranges::find(KeyMappings::repeatModes(), repeat, &KeyMappings::RepeatMode::value)
           != KeyMappings::repeatModes().end();
}

} // namespace

MacroTries::MacroTries(const QDBusConnection &bus) : MacroTries(bus, KeyClock{.now = DeadlineTimer::now})
{
    auto *timer = new DeadlineTimer(this);
    connect(timer, &DeadlineTimer::reached, this, &MacroTries::wake);
    mClock.wakeAt = [timer](std::optional<Time> time) { timer->setDeadline(time); };
}

MacroTries::MacroTries(const QDBusConnection &bus, KeyClock clock) : mBus(bus), mClock(std::move(clock))
{
    mCallerWatch.setConnection(bus);
    mCallerWatch.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&mCallerWatch, &QDBusServiceWatcher::serviceUnregistered, this, &MacroTries::callerHasGone);
}

void MacroTries::setMacros(const QVariantList &macros)
{
    mMacros = macros;
    endIf(mClock.now(), [this](const Try &tried) -> std::optional<End> {
        const MacroPlayback &playback = tried.playback;
        const std::optional<int> index = MacroRecord::indexOfMacroId(mMacros, playback.macro()->macroId);
        const bool isSame = index && MacroRecord::sequence(mMacros.at(*index).toMap()) == playback.macro()->sequence;
        return isSame ? std::nullopt : std::optional(End::changed);
    });
}

Result<quint32, MacroTries::Refusal> MacroTries::start(const QString &caller, int macroId, int repeat)
{
    if (!isRepeatMode(repeat))
        return Refusal::noSuchRepeat;
    const std::optional<int> index = MacroRecord::indexOfMacroId(mMacros, macroId);
    if (!index)
        return Refusal::gone;
    const PlayableMacros macros = playableMacros({mMacros.at(*index)});
    if (macros.front()->steps.empty())
        return Refusal::empty;
    const Time now = mClock.now();
    endIf(now,
          [&caller](const Try &tried) { return tried.caller == caller ? std::optional(End::stopped) : std::nullopt; });
    if (mTries.size() == maximumTries)
        return Refusal::tooMany;
    const KeyAssignment assignment{.kind = KeyAssignment::Kind::playMacro, .repeat = repeat};
    mTries.push_back({.caller = caller,
                      .number = ++mLastNumber,
                      .playback = MacroPlayback({}, assignment, macros.front(), now),
                      .start = now,
                      .nextBatch = now});
    watchCallers();
    checkPresence(caller);
    requestWake();
    return mLastNumber;
}

void MacroTries::stop(const QString &caller, quint32 number)
{
    endIf(mClock.now(), [&](const Try &tried) {
        const bool isMeant = tried.caller == caller && tried.number == number;
        return isMeant ? std::optional(End::stopped) : std::nullopt;
    });
}

void MacroTries::wake()
{
    const Time now = mClock.now();
    for (Try &tried : mTries) {
        if (tried.nextBatch <= now)
            play(tried, now);
    }
    endIf(now, [now](const Try &tried) -> std::optional<End> {
        if (tried.playback.isOver())
            return End::finished;
        const bool isTooLong = tried.eventsLeft <= 0 || now - tried.start >= longestTry;
        return isTooLong ? std::optional(End::limit) : std::nullopt;
    });
    requestWake();
}

void MacroTries::play(Try &tried, Time now)
{
    QList<TriedEvent> events;
    MacroPlayback &playback = tried.playback;
    for (int steps = 0; steps < stepsPerBatch && tried.eventsLeft > 0 && !playback.isOver(); ++steps) {
        const Time due = playback.due();
        if (due > now)
            break;
        const std::optional<MacroPlayback::Change> change = playback.takeNext(due);
        tried.nextBatch = now + batchInterval;
        if (!change)
            continue;
        events += {.event = change->event, .time = due - tried.start, .usage = change->usage, .isDown = change->isDown};
        --tried.eventsLeft;
    }
    if (!events.isEmpty())
        Q_EMIT played(tried.caller, tried.number, events);
}

void MacroTries::end(Try tried, Time now, End end)
{
    if (end == End::stopped || end == End::changed)
        play(tried, now);
    QList<TriedEvent> releases;
    HeldUsages &held = tried.playback.held();
    while (!held.isEmpty())
        releases += {.event = -1, .time = now - tried.start, .usage = held.takeFirst(), .isDown = false};
    if (!releases.isEmpty())
        Q_EMIT played(tried.caller, tried.number, releases);
    Q_EMIT ended(tried.caller, tried.number, end);
}

template <typename EndOf> void MacroTries::endIf(Time now, EndOf endOf)
{
    const std::size_t before = mTries.size();
    for (auto tried = mTries.begin(); tried != mTries.end();) {
        const std::optional<End> reason = endOf(std::as_const(*tried));
        if (!reason) {
            ++tried;
            continue;
        }
        Try over = std::move(*tried);
        tried = mTries.erase(tried);
        end(std::move(over), now, *reason);
    }
    if (mTries.size() == before)
        return;
    watchCallers();
    requestWake();
}

void MacroTries::callerHasGone(const QString &caller)
{
    std::erase_if(mTries, [&caller](const Try &tried) { return tried.caller == caller; });
    watchCallers();
    requestWake();
}

void MacroTries::checkPresence(const QString &caller)
{
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                           u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << caller;
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, caller] {
        watcher->deleteLater();
        const QDBusPendingReply<bool> isPresent = *watcher;
        if (!isPresent.isError() && !isPresent.value())
            callerHasGone(caller);
    });
}

void MacroTries::watchCallers()
{
    QStringList callers;
    for (const Try &tried : mTries)
        callers += tried.caller;
    // One by one: setWatchedServices() stops watching all of them for a moment, in which one may go unnoticed.
    const QStringList watched = mCallerWatch.watchedServices();
    for (const QString &caller : watched) {
        if (!callers.contains(caller))
            mCallerWatch.removeWatchedService(caller);
    }
    for (const QString &caller : std::as_const(callers)) {
        if (!watched.contains(caller))
            mCallerWatch.addWatchedService(caller);
    }
}

void MacroTries::requestWake()
{
    std::optional<Time> earliest;
    for (const Try &tried : mTries) {
        const Time next = tried.playback.isOver() ? tried.nextBatch : std::max(tried.playback.due(), tried.nextBatch);
        const Time wanted = std::min<Time>(next, tried.start + longestTry);
        earliest = earliest ? std::min(*earliest, wanted) : wanted;
    }
    mClock.wakeAt(earliest);
}
