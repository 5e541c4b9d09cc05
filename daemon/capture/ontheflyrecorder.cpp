// SPDX-License-Identifier: MIT
#include "daemon/capture/ontheflyrecorder.h"

namespace {

constexpr int noMacroYet = 0; // the macro gets its number when it is stored

} // namespace

void OnTheFlyRecorder::pressMacroKey(Time now, int capacity)
{
    switch (mState) {
    case State::off:
        mRecorder.start({.macroId = noMacroYet, .capacity = capacity, .followsEvents = false, .firstDelayMs = 0});
        mState = State::recording;
        break;
    case State::recording:
        mRecorder.stop(now);
        mState = State::awaitingKey;
        if (events().isEmpty())
            end();
        break;
    case State::awaitingKey: end(); break;
    }
}

void OnTheFlyRecorder::keyChanged(HidUsage key, bool isDown, Time now)
{
    if (mState == State::recording)
        (void)mRecorder.record(key, isDown, now);
}

QVariantList OnTheFlyRecorder::events() const
{
    return mState == State::awaitingKey ? mRecorder.recorded(noMacroYet).value_or(QVariantList()) : QVariantList();
}

void OnTheFlyRecorder::end()
{
    mRecorder.discard();
    mState = State::off;
}
