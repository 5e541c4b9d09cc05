// SPDX-License-Identifier: MIT
// The playback of one macro: its next event and the time of this event. No clock; owned by the key engine, one thread.
#pragma once

#include "base/hidusage.h"
#include "daemon/engine/keyassignment.h"
#include "daemon/engine/playablemacro.h"

#include <bitset>
#include <chrono>
#include <memory>
#include <optional>

/// The keys and buttons that one macro holds down. Allocates nothing.
class HeldUsages
{
public:
    [[nodiscard]] bool isEmpty() const { return mHeld.none(); }
    /// False if it was held already.
    bool insert(HidUsage usage);
    /// False if it was not held.
    bool remove(HidUsage usage);
    /// Removes and returns the lowest key code or, without keys, the lowest button. Ordinary keys therefore come up
    /// before the modifiers around them. Must not be called when empty.
    HidUsage takeFirst();

private:
    static constexpr std::size_t firstButton = HidUsage::lastKey; // button n is at firstButton + n
    static std::size_t position(HidUsage usage);

    std::bitset<firstButton + 10> mHeld; // the playable buttons are 1 to 9
};

/// Plays round after round. Counts all times from the start, not from the last event, so the delays of a timer do not
/// add up. An event that is later than that moves everything after it, so pauses keep their length. At its end, each
/// round releases everything that its macro has pressed and not released.
class MacroPlayback
{
public:
    using Time = std::chrono::microseconds; // since any fixed moment

    /// The usual delay of a timer on a busy machine. A later event moves the rest of the macro.
    static constexpr std::chrono::milliseconds toleratedDelay{3};

    struct Change
    {
        HidUsage usage;
        bool isDown = false;
        int event = -1; ///< the index of the event in the macro; -1 for a release at the end of a round
    };

    /// `assignment` belongs to `trigger`, the key pressed at `start`. `macro` has at least one step.
    MacroPlayback(HidUsage trigger, const KeyAssignment &assignment, std::shared_ptr<const PlayableMacro> macro,
                  Time start);

    [[nodiscard]] HidUsage trigger() const { return mTrigger; }
    [[nodiscard]] const std::shared_ptr<const PlayableMacro> &macro() const { return mMacro; }
    [[nodiscard]] bool endsWithRelease() const;
    [[nodiscard]] bool endsWithNextPress() const;
    /// Whether the trigger's `assignment`, which names `macro` (null for none), still refers to this playback.
    [[nodiscard]] bool isMeantBy(const KeyAssignment &assignment, const PlayableMacro *macro) const;

    /// The time of the next event. Must not be called when the playback is over.
    [[nodiscard]] Time due() const;
    /// The event at due(); absent for a press of a held key or a release of one not held. `now` must not be before
    /// due().
    [[nodiscard]] std::optional<Change> takeNext(Time now);
    [[nodiscard]] bool isOver() const { return mRoundsLeft == 0; }

    /// The keys and buttons to release if the playback ends early.
    [[nodiscard]] HeldUsages &held() { return mHeld; }

private:
    [[nodiscard]] bool isEndless() const { return endsWithRelease() || endsWithNextPress(); }
    [[nodiscard]] std::optional<Change> change();
    void endRound();

    HidUsage mTrigger;
    int mMacroIndex = 0;
    int mRepeat = 0; // as in KeyAssignment
    std::shared_ptr<const PlayableMacro> mMacro;
    Time mRoundStart;
    std::size_t mNextStep = 0;
    int mRoundsLeft = 1; // stays 1 in an endless repeat
    HeldUsages mHeld;
};
