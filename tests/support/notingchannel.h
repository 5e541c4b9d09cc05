// SPDX-License-Identifier: MIT
// A keyboard's keys for tests. Records the keys that the computer receives, and reports contradictions. Used on the
// thread of KeyChannel.
#pragma once

#include "daemon/keyboards/keychannel.h"

#include <bitset>

/// Allocates no memory.
class NotingChannel : public KeyChannel
{
public:
    using KeyChannel::KeyChannel;

    void send(HidUsage usage, bool isDown) override
    {
        const std::size_t place = (usage.page == HidUsage::buttonPage ? buttonPlaces : 0U) + (usage.usage & 0xFFU);
        mHasMadeNoSense = mHasMadeNoSense || mDown[place] == isDown;
        mDown[place] = isDown;
        ++mSent;
        ++mUnflushed;
    }
    void flush() override
    {
        mHasMadeNoSense = mHasMadeNoSense || mUnflushed == 0;
        mUnflushed = 0;
        ++mFlushes;
    }

    [[nodiscard]] bool isDown(quint16 key) const { return mDown[key]; }
    [[nodiscard]] std::size_t downCount() const { return mDown.count(); }
    [[nodiscard]] int sent() const { return mSent; }
    [[nodiscard]] int flushes() const { return mFlushes; }
    [[nodiscard]] int unflushed() const { return mUnflushed; }
    /// Whether a usage was pressed while it was down, released while it was up, or a flush had nothing to send.
    [[nodiscard]] bool hasMadeNoSense() const { return mHasMadeNoSense; }

private:
    static constexpr std::size_t buttonPlaces = 256;

    std::bitset<2 * buttonPlaces> mDown;
    int mSent = 0;
    int mUnflushed = 0;
    int mFlushes = 0;
    bool mHasMadeNoSense = false;
};
