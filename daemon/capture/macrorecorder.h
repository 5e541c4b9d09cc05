// SPDX-License-Identifier: MIT
// Records one macro from the keyboard: keys and their times in, events and their display lines out. No clock, no I/O.
// Owned by the CaptureSession and by each OnTheFlyRecorder; one thread.
#pragma once

#include "base/hidusage.h"

#include <QList>
#include <QStringList>
#include <QVariantList>

#include <chrono>
#include <optional>

/// Idle -> start() -> recording -> stop() -> recorded -> discard() -> idle. start() restarts from any state.
class MacroRecorder
{
public:
    using Time = std::chrono::milliseconds;

    /// `time` in the unit of recordings. Rounds each moment rather than each pause, so rounding errors of a long
    /// recording do not add up.
    [[nodiscard]] static Time rounded(std::chrono::microseconds time) { return std::chrono::round<Time>(time); }

    struct Target
    {
        int macroId = 0;            ///< the record's own "macroID"
        int capacity = 0;           ///< events that still fit the macro
        bool followsEvents = false; ///< the macro has earlier events, so the first recorded one has a delay line
        int firstDelayMs = 0;       ///< before the first recorded event, which has no pause of its own
    };

    void start(const Target &target);

    /// The record's own "macroID" of the latest recording; 0 before the first one.
    [[nodiscard]] int macroId() const { return mTarget.macroId; }

    /// The display lines of the event just recorded. Empty if it is not recorded: the release of a key pressed before
    /// the recording, or a key that no longer fits the macro.
    [[nodiscard]] QStringList record(HidUsage key, bool isDown, Time now);

    /// Whether a key that goes down now would no longer fit the macro; false when nothing is being recorded.
    [[nodiscard]] bool isFull() const;

    /// Removes the press of `key` and the pause before it, if that was recorded last. Meant for a key that ends the
    /// recording; stop() must follow.
    void removePress(HidUsage key);

    /// Ends the recording; keys that are still down are recorded as released now.
    void stop(Time now);

    /// The events recorded for this macro; absent if no recording for it has ended.
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
