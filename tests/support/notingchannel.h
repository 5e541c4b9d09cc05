// SPDX-License-Identifier: MIT
// A keyboard's keys for tests: says what the computer saw, and whether that made sense. Its thread as KeyChannel's.
#pragma once

#include "daemon/keyboards/keychannel.h"

#include <bitset>

/// Allocates nothing.
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
    /// A usage went down that was down, or up that was up, or a flush had nothing to flush.
    [[nodiscard]] bool hasMadeNoSense() const { return mHasMadeNoSense; }

private:
    static constexpr std::size_t buttonPlaces = 256;

    std::bitset<2 * buttonPlaces> mDown;
    int mSent = 0;
    int mUnflushed = 0;
    int mFlushes = 0;
    bool mHasMadeNoSense = false;
};
