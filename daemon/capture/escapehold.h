// SPDX-License-Identifier: MIT
// Whether Escape is held alone for so long that the keys are to be given back to the computer: the way out of a capture
// for somebody who has no other keyboard and no mouse. The time is passed in. Owned by the CaptureSession, one thread.
#pragma once

#include "daemon/engine/hidusage.h"

#include <QList>

#include <chrono>
#include <optional>

/// Begins anew with each capture. Alone: no other key is down, and none has been pressed or released since Escape was
/// pressed. Keys that were down before the capture are not known.
class EscapeHold
{
public:
    using Time = std::chrono::microseconds; // since any fixed moment

    static constexpr HidUsage escape{.page = HidUsage::keyboardPage, .usage = 0x29};
    static constexpr std::chrono::seconds duration{1};

    /// A key or a button of the keyboard.
    void keyChanged(HidUsage key, bool isDown, Time time);

    /// When Escape will have been held for long enough, if no key changes until then; absent when it is not held alone.
    [[nodiscard]] std::optional<Time> end() const { return mEnd; }

private:
    QList<HidUsage> mDown;
    std::optional<Time> mEnd;
};
