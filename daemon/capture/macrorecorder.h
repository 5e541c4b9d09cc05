// SPDX-License-Identifier: MIT
// Records one macro from the keyboard: keys with the time passed in, events and their display lines out. No clock, no
// I/O. Owned by the CaptureSession and by each OnTheFlyRecorder; one thread.
#pragma once

#include "daemon/engine/hidusage.h"

#include <QList>
#include <QStringList>
#include <QVariantList>

#include <chrono>
#include <optional>

/// Idle -> start() -> recording -> stop() -> recorded -> discard() -> idle. start() begins anew from any state.
class MacroRecorder
{
public:
    using Time = std::chrono::milliseconds;

    /// `time` in the unit of recordings. Each moment is rounded, not each pause, so that the rounding of a long
    /// recording does not add up.
    [[nodiscard]] static Time rounded(std::chrono::microseconds time) { return std::chrono::round<Time>(time); }

    struct Target
    {
        int macroId = 0;            ///< the record's own "macroID"
        int capacity = 0;           ///< events that still fit the macro
        bool followsEvents = false; ///< events stand before the recorded ones, so that the first has a delay line
        int firstDelayMs = 0;       ///< before the first recorded event, which has no pause of its own
    };

    void start(const Target &target);

    /// The display lines of the event just recorded; none when it is not recorded: a release of a key that was down
    /// before the recording began, or a key for which the macro has no room left.
    [[nodiscard]] QStringList record(HidUsage key, bool isDown, Time now);

    /// Forgets the press of `key` and the pause before it, if that is what was recorded last. For what ends the
    /// recording: stop() is to follow.
    void takeBack(HidUsage key);

    /// Ends the recording; keys that are still down are recorded as released now.
    void stop(Time now);

    /// The events recorded for this macro; absent when there is no ended recording for it.
    [[nodiscard]] std::optional<QVariantList> recorded(int macroId) const;
    void discard();

private:
    enum class State { idle, recording, recorded };

    [[nodiscard]] QVariantMap append(HidUsage key, bool isDown, Time now);

    State mState = State::idle;
    Target mTarget;
    QVariantList mEvents;
    QList<HidUsage> mHeld;
    Time mLast{};
};
