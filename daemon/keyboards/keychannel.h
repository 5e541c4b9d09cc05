// SPDX-License-Identifier: MIT
// The keys of one keyboard, in and out: presses from the keyboard, and output to the computer in their place. Lives on
// the thread of its key path.
#pragma once

#include "base/hidusage.h"
#include "daemon/keyboards/keytap.h"

#include <QObject>

#include <chrono>

/// Receives the keys of a channel, on the channel's thread.
class KeyReceiver
{
public:
    using Time = std::chrono::microseconds; // of the path's clock

    virtual ~KeyReceiver() = default;

    /// `time`: of the event; not after now. `systemKey`: as in KeyEngine::keyDown().
    virtual void takeKey(HidUsage key, bool isDown, Time time, HidUsage systemKey) = 0;
};

class KeyChannel : public QObject
{
    Q_OBJECT

public:
    using Time = KeyReceiver::Time;

    using QObject::QObject;

    /// Must be called on the channel's thread, or before the channel is moved to it. Null: the keys are ignored.
    void setReceiver(KeyReceiver *receiver) { mReceiver = receiver; }
    /// Passes a key to the receiver. A call, because a signal takes twice the instructions of an ordinary key.
    void keyChanged(HidUsage key, bool isDown, Time time, HidUsage systemKey)
    {
        if (mReceiver)
            mReceiver->takeKey(key, isDown, time, systemKey);
    }

    /// Makes the computer see `usage`, possibly on HidUsage::systemPage, go down or up, at the latest with the next
    /// flush(). Allocates nothing.
    virtual void send(HidUsage usage, bool isDown) = 0;
    /// Ends the report of everything sent since the last call.
    virtual void flush() = 0;

    /// Gets what the channel receives and sends. Any thread, see KeyTap.
    [[nodiscard]] KeyTap &tap() { return mTap; }

Q_SIGNALS:
    // Emitted on the channel's thread.
    /// The Macro key of the keyboard went down.
    void macroKeyPressed(KeyChannel::Time time);
    /// A key that the path does not receive is about to go down.
    void otherKeyPressed();
    /// The keyboard was removed or released: everything that its keys have begun must end. Keys may still be down, and
    /// their releases will not come.
    void keysLost();

private:
    KeyTap mTap;
    KeyReceiver *mReceiver = nullptr;
};
