// SPDX-License-Identifier: MIT
// Records a macro with the keyboard alone: the Macro key, the keys, the Macro key, and the key that will play it. A
// state machine; the caller passes the time. Owned by the OnTheFlySession, one thread.
#pragma once

#include "daemon/capture/macrorecorder.h"
#include "daemon/keyboards/ontheflystate.h"

/// off -> Macro key -> recording -> Macro key -> awaitingKey -> end() -> off. The Macro key discards the recording in
/// awaitingKey, and also in `recording` if there are no events. A second press therefore undoes an accidental one.
class OnTheFlyRecorder
{
public:
    using Time = MacroRecorder::Time;

    using State = OnTheFlyState;

    [[nodiscard]] State state() const { return mState; }

    /// `capacity`: the most events of a recording that starts now.
    void pressMacroKey(Time now, int capacity);
    /// A key of the keyboard; ignored unless recording.
    void keyChanged(HidUsage key, bool isDown, Time now);
    /// The recorded events in awaitingKey; empty in every other state.
    [[nodiscard]] QVariantList events() const;
    /// The events have been used, or a client needs the keys.
    void end();

private:
    State mState = State::off;
    MacroRecorder mRecorder;
};
