// SPDX-License-Identifier: MIT
#include "daemon/engine/macroplayback.h"

#include "keys/keymapping.h"

// Held usages

std::size_t HeldUsages::position(HidUsage usage)
{
    return usage.page == HidUsage::keyboardPage ? usage.usage : firstButton + usage.usage;
}

bool HeldUsages::insert(HidUsage usage)
{
    const std::size_t place = position(usage);
    const bool isNew = !mHeld[place];
    mHeld[place] = true;
    return isNew;
}

bool HeldUsages::remove(HidUsage usage)
{
    const std::size_t place = position(usage);
    const bool wasHeld = mHeld[place];
    mHeld[place] = false;
    return wasHeld;
}

HidUsage HeldUsages::takeFirst()
{
    std::size_t place = 0;
    while (!mHeld[place])
        ++place;
    mHeld[place] = false;
    if (place <= HidUsage::lastKey)
        return {HidUsage::keyboardPage, static_cast<quint16>(place)};
    return {HidUsage::buttonPage, static_cast<quint16>(place - firstButton)};
}

// Playback

MacroPlayback::MacroPlayback(HidUsage trigger, const KeyAssignment &assignment,
                             std::shared_ptr<const PlayableMacro> macro, Time start)
    : mTrigger(trigger), mMacroIndex(assignment.index), mRepeat(assignment.repeat), mMacro(std::move(macro)),
      mRoundStart(start)
{
    if (!isEndless())
        mRoundsLeft = mRepeat;
}

bool MacroPlayback::endsWithRelease() const
{
    return mRepeat == KeyMappings::repeatUntilReleasedValue;
}

bool MacroPlayback::endsWithNextPress() const
{
    return mRepeat == KeyMappings::repeatUntilPressedAgainValue;
}

bool MacroPlayback::isMeantBy(const KeyAssignment &assignment, const PlayableMacro *macro) const
{
    // When an earlier macro is deleted, the indices shift at once and the key's entry follows a moment later. Until
    // then, the old index is as valid as the macro itself.
    return assignment.kind == KeyAssignment::Kind::playMacro && assignment.repeat == mRepeat
           && (assignment.index == mMacroIndex || macro == mMacro.get());
}

MacroPlayback::Time MacroPlayback::due() const
{
    const auto &steps = mMacro->steps;
    return mRoundStart + (mNextStep < steps.size() ? steps[mNextStep].at : mMacro->length);
}

std::optional<MacroPlayback::Change> MacroPlayback::takeNext(Time now)
{
    if (const Time delay = now - due(); delay > toleratedDelay)
        mRoundStart += delay;
    const std::optional<Change> next = change();
    if (mNextStep == mMacro->steps.size() && mHeld.isEmpty())
        endRound();
    return next;
}

std::optional<MacroPlayback::Change> MacroPlayback::change()
{
    if (mNextStep == mMacro->steps.size())
        return Change{.usage = mHeld.takeFirst(), .isDown = false};
    const MacroStep &step = mMacro->steps[mNextStep++];
    const bool isChange = step.isDown ? mHeld.insert(step.usage) : mHeld.remove(step.usage);
    return isChange ? std::optional(Change{.usage = step.usage, .isDown = step.isDown, .event = step.event})
                    : std::nullopt;
}

void MacroPlayback::endRound()
{
    if (!isEndless() && --mRoundsLeft == 0)
        return;
    mNextStep = 0;
    mRoundStart += mMacro->spacing;
}
