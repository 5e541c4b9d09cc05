// SPDX-License-Identifier: MIT
// One macro that plays: which of its events comes next, and when. No clock; owned by the key engine, one thread.
#pragma once

#include "daemon/engine/hidusage.h"
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
    /// False when it was held already.
    bool insert(HidUsage usage);
    /// False when it was not held.
    bool remove(HidUsage usage);
    /// Takes out the lowest key code; when there is no key, the lowest button: so keys come up before the modifiers
    /// around them. Not to be called when empty.
    HidUsage takeFirst();

private:
    static constexpr std::size_t firstButton = HidUsage::lastKey; // button n stands at firstButton + n
    static std::size_t position(HidUsage usage);

    std::bitset<firstButton + 10> mHeld; // the playable buttons are 1 to 9
};

/// Plays round after round. All times come from the moment of the start by adding what the macro says, never from the
/// moment at which something was late, so that no error adds up. Every round lets go of what it has pressed: at its
/// end, of what the macro itself has not released.
class MacroPlayback
{
public:
    using Time = std::chrono::microseconds; // since any fixed moment

    struct Change
    {
        HidUsage usage;
        bool isDown = false;
    };

    /// `assignment` is that of `trigger`, the key that was pressed at `start`. `macro` has at least one step.
    MacroPlayback(HidUsage trigger, const KeyAssignment &assignment, std::shared_ptr<const PlayableMacro> macro,
                  Time start);

    [[nodiscard]] HidUsage trigger() const { return mTrigger; }
    [[nodiscard]] const std::shared_ptr<const PlayableMacro> &macro() const { return mMacro; }
    [[nodiscard]] bool endsWithRelease() const;
    [[nodiscard]] bool endsWithNextPress() const;
    /// Whether `assignment` of the trigger, which names `macro` (null for none), still means this playback.
    [[nodiscard]] bool isMeantBy(const KeyAssignment &assignment, const PlayableMacro *macro) const;

    /// When the next thing is to happen. Not to be called when it is over.
    [[nodiscard]] Time due() const;
    /// What happens at due(); absent when that changes nothing: a second press of what is held, a release of what is
    /// not. `now` is not before due(); an endless repeat leaves out whole rounds that are past.
    [[nodiscard]] std::optional<Change> takeNext(Time now);
    [[nodiscard]] bool isOver() const { return mRoundsLeft == 0; }

    /// What it holds down, for letting go of it before its end.
    [[nodiscard]] HeldUsages &held() { return mHeld; }

private:
    [[nodiscard]] bool isEndless() const { return endsWithRelease() || endsWithNextPress(); }
    [[nodiscard]] std::optional<Change> change();
    void endRound(Time now);

    HidUsage mTrigger;
    int mMacroIndex = 0;
    int mRepeat = 0; // as in KeyAssignment
    std::shared_ptr<const PlayableMacro> mMacro;
    Time mRoundStart;
    std::size_t mNextStep = 0;
    int mRoundsLeft = 1; // stays 1 in an endless repeat
    HeldUsages mHeld;
};
