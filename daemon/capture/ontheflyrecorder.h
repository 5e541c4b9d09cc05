// SPDX-License-Identifier: MIT
// Recording a macro with nothing but the keyboard: the Macro key, the keys, the Macro key, and the key that is to play
// it. A state machine with the time passed in. Owned by the OnTheFlySession, one thread.
#pragma once

#include "daemon/capture/macrorecorder.h"
#include "daemon/keyboards/ontheflystate.h"

/// off -> Macro key -> recording -> Macro key -> awaitingKey -> end() -> off. The Macro key in awaitingKey throws the
/// recording away, and so does one without any event, so that a key hit by accident is undone by hitting it again.
class OnTheFlyRecorder
{
public:
    using Time = MacroRecorder::Time;

    using State = OnTheFlyState;

    [[nodiscard]] State state() const { return mState; }

    /// `capacity`: how many events the recording may have if it begins now.
    void pressMacroKey(Time now, int capacity);
    /// A key of the keyboard; recorded while recording, else ignored.
    void keyChanged(HidUsage key, bool isDown, Time now);
    /// The recorded events, in awaitingKey; empty in every other state.
    [[nodiscard]] QVariantList events() const;
    /// The events have been used, or somebody else needs the keys.
    void end();

private:
    State mState = State::off;
    MacroRecorder mRecorder;
};
