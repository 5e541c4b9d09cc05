// SPDX-License-Identifier: MIT
#include "daemon/capture/macrorecorder.h"

#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <algorithm>
#include <limits>

void MacroRecorder::start(const Target &target)
{
    mState = State::recording;
    mTarget = target;
    mEvents.clear();
    mHeld.clear();
}

QStringList MacroRecorder::record(HidUsage key, bool isDown, Time now)
{
    if (mState != State::recording)
        return {};
    if (isDown) {
        if (isFull() || mHeld.contains(key))
            return {};
        mHeld += key;
    } else if (!mHeld.removeOne(key)) {
        return {};
    }
    const bool hasDelayLine = mTarget.followsEvents || !mEvents.isEmpty();
    QStringList lines = eventParser::parseSequence(append(key, isDown, now));
    if (!hasDelayLine)
        lines.removeFirst();
    return lines;
}

bool MacroRecorder::isFull() const
{
    // Room for one more press, its release and the releases of held keys, so every recorded press has its release.
    const qsizetype needed = mEvents.size() + mHeld.size() + 2;
    return mState == State::recording && needed > mTarget.capacity;
}

void MacroRecorder::removePress(HidUsage key)
{
    if (mState != State::recording || mEvents.isEmpty())
        return;
    const MacroRecord::Event last = MacroRecord::eventFields(mEvents.last().toMap());
    if (last.command != MacroRecord::keyDown || last.page != key.page || last.argument != key.usage)
        return;
    mHeld.removeOne(key);
    mEvents.removeLast();
}

void MacroRecorder::stop(Time now)
{
    if (mState != State::recording)
        return;
    while (!mHeld.isEmpty())
        (void)append(mHeld.takeLast(), false, now);
    mState = State::recorded;
}

std::optional<QVariantList> MacroRecorder::recorded(int macroId) const
{
    return mState == State::recorded && macroId == mTarget.macroId ? std::optional(mEvents) : std::nullopt;
}

void MacroRecorder::discard()
{
    mState = State::idle;
    mEvents.clear();
    mHeld.clear();
}

QVariantMap MacroRecorder::append(HidUsage key, bool isDown, Time now)
{
    const auto pause = std::clamp<qint64>((now - mLast).count(), 0, std::numeric_limits<int>::max());
    const QVariantMap event = MacroRecord::eventRecord({
        .command = isDown ? MacroRecord::keyDown : MacroRecord::keyUp,
        .delayMs = mEvents.isEmpty() ? mTarget.firstDelayMs : static_cast<int>(pause),
        .page = key.page,
        .argument = key.usage,
    });
    mEvents += event;
    mLast = now;
    return event;
}
