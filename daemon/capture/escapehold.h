// SPDX-License-Identifier: MIT
// Detects that Escape is held alone long enough to end a capture: the way out for users without another keyboard or a
// mouse. The caller passes the time. Owned by the CaptureSession, one thread.
#pragma once

#include "base/hidusage.h"

#include <QList>

#include <chrono>
#include <optional>

/// Starts anew with each capture. Alone: no other key is down, and none was pressed or released since Escape was
/// pressed. Keys pressed before the capture are unknown.
class EscapeHold
{
public:
    using Time = std::chrono::microseconds; // since any fixed moment

    static constexpr HidUsage escape{.page = HidUsage::keyboardPage, .usage = 0x29};
    static constexpr std::chrono::seconds duration{1};

    /// A key or a button of the keyboard.
    void keyChanged(HidUsage key, bool isDown, Time time);

    /// The time at which Escape will have been held long enough if no key changes; absent when it is not held alone.
    [[nodiscard]] std::optional<Time> end() const { return mEnd; }

private:
    QList<HidUsage> mDown;
    std::optional<Time> mEnd;
};
