// SPDX-License-Identifier: MIT
// Plays macros for clients that want to see what the computer would receive. Nothing reaches a keyboard or the
// computer: the only output is a signal. Owned by the DaemonSession; main thread only.
#pragma once

#include "base/hidusage.h"
#include "base/result.h"
#include "daemon/engine/macroplayback.h"
#include "daemon/keyboards/keypath.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QVariantList>

#include <vector>

/// One key or button that goes down or comes up.
struct TriedEvent
{
    int event = -1;       ///< the index of the event in the macro; -1 for a release that the end of a round adds
    KeyEngine::Time time; ///< since the beginning of the try
    HidUsage usage;
    bool isDown = false;

    bool operator==(const TriedEvent &) const = default;
};

/// A caller has one try at a time, which ends with the caller and with any change of the macro's events. Events are
/// reported in batches, so a macro without pauses does not flood the bus. Their times are those that the macro asks
/// for: a try has no computer that could be late.
class MacroTries : public QObject
{
    Q_OBJECT

public:
    using Time = KeyEngine::Time;

    static constexpr std::size_t maximumTries = 8; ///< of all callers
    static constexpr std::chrono::milliseconds batchInterval{20};
    static constexpr int stepsPerBatch = 1000; ///< of the macro; later ones come with the next batch
    /// A try ends after this time or this number of events. A macro that repeats until a key is released would
    /// otherwise never end, because a try has no key.
    static constexpr std::chrono::minutes longestTry{10};
    static constexpr int maximumEvents = 100'000;

    enum class Refusal {
        gone,         ///< there is no macro with this number
        empty,        ///< the macro plays nothing
        noSuchRepeat, ///< not a value of KeyMappings::repeatModes()
        tooMany       ///< maximumTries run
    };

    enum class End {
        finished, ///< all rounds were played
        stopped,  ///< by its caller, also by the caller's next try
        changed,  ///< the macro was deleted, or its events were changed
        limit     ///< longestTry or maximumEvents
    };

    explicit MacroTries(const QDBusConnection &bus);
    MacroTries(const QDBusConnection &bus, KeyClock clock);

    /// Must be called at first and after each change. `macros`: the array "Macros" of the document.
    void setMacros(const QVariantList &macros);

    /// Starts a try and returns its number. Ends an earlier one of this caller. `caller`: its unique name on the bus.
    /// `macroId`: the record's own "macroID". `repeat`: as "param2" of a key that plays the macro. A repeat until the
    /// key is released or pressed again lasts until stop().
    [[nodiscard]] Result<quint32, Refusal> start(const QString &caller, int macroId, int repeat);
    /// Ends the try `number` of this caller, and releases what the macro holds. Does nothing if it has already ended.
    void stop(const QString &caller, quint32 number);

    /// Must be called at the time requested of the clock.
    void wake();

Q_SIGNALS:
    // The receivers must not call this object. Never emitted in start() for the new try.
    void played(const QString &caller, quint32 number, const QList<TriedEvent> &events);
    /// The last signal of a try. A try whose caller has left the bus ends without it.
    void ended(const QString &caller, quint32 number, MacroTries::End end);

private:
    struct Try
    {
        QString caller;
        quint32 number = 0;
        MacroPlayback playback;
        Time start;
        Time nextBatch; ///< the earliest time for it
        int eventsLeft = maximumEvents;
    };

    /// Emits the events of `tried` that are due by `now`.
    void play(Try &tried, Time now);
    void end(Try tried, Time now, End end);
    /// Ends those for which `endOf` returns a value.
    template <typename EndOf> void endIf(Time now, EndOf endOf);
    void callerHasGone(const QString &caller);
    /// A caller that left before its watch began would not be noticed.
    void checkPresence(const QString &caller);
    void watchCallers();
    void requestWake();

    QDBusConnection mBus;
    KeyClock mClock;
    QDBusServiceWatcher mCallerWatch;
    QVariantList mMacros;
    std::vector<Try> mTries;
    quint32 mLastNumber = 0;
};
