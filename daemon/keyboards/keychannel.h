// SPDX-License-Identifier: MIT
// The keys of one keyboard, in and out: what is pressed on it, and what the computer is to see in their place. Lives on
// the thread of its key path.
#pragma once

#include "daemon/engine/hidusage.h"

#include <QObject>

#include <chrono>

class KeyChannel : public QObject
{
    Q_OBJECT

public:
    using Time = std::chrono::microseconds; // that of the path's clock

    using QObject::QObject;

    /// Makes the computer see `usage` go down or up, at the latest with the next flush(). Allocates nothing.
    virtual void send(HidUsage usage, bool isDown) = 0;
    /// What was sent since the last call belongs together and is complete.
    virtual void flush() = 0;

Q_SIGNALS:
    // Emitted on the channel's thread, so that a key reaches the engine without an allocation.
    void keyChanged(HidUsage key, bool isDown, KeyChannel::Time time); ///< `time`: when it happened; not after now
    /// The keyboard is gone or given back: what its keys have begun is to end. Keys may be down still, no release of
    /// them will come.
    void emptied();
};
