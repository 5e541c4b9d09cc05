// SPDX-License-Identifier: MIT
// The events of a key channel for a watch: what came from the keyboard, and what went to the computer. The channel's
// thread adds events; the watch takes them on the main thread. Adding never waits, allocates or calls the system.
#pragma once

#include "base/hidusage.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <optional>

/// A ring for one writer and one reader. A full one loses events and counts them.
class KeyTap
{
public:
    static constexpr std::size_t capacity = 1024;

    enum class Side : quint8 { keyboard, computer };

    struct Event
    {
        Side side = Side::keyboard;
        HidUsage usage = {.page = 0}; ///< page 0: see type and code
        quint16 type = 0;             ///< of <linux/input-event-codes.h>
        quint16 code = 0;             ///< of the type
        int value = 0;                ///< a key: 1 down, 0 up

        bool operator==(const Event &) const = default;
    };

    // The channel's thread
    void addKey(Side side, HidUsage usage, bool isDown)
    {
        if (isOn())
            add({.side = side, .usage = usage, .value = isDown ? 1 : 0});
    }
    void addEvent(Side side, quint16 type, quint16 code, int value)
    {
        if (isOn())
            add({.side = side, .usage = {.page = 0}, .type = type, .code = code, .value = value});
    }

    [[nodiscard]] bool isOn() const { return mIsOn.load(std::memory_order_relaxed); }

    // The main thread
    /// Discards earlier events.
    void start()
    {
        mRead.store(mWritten.load(std::memory_order_acquire), std::memory_order_release);
        mLost.store(0, std::memory_order_relaxed);
        mIsOn.store(true, std::memory_order_relaxed);
    }
    void stop() { mIsOn.store(false, std::memory_order_relaxed); }
    /// The oldest event; absent when there is none.
    [[nodiscard]] std::optional<Event> take()
    {
        const std::size_t read = mRead.load(std::memory_order_relaxed);
        if (read == mWritten.load(std::memory_order_acquire))
            return {};
        const Event event = mEvents[read % capacity];
        mRead.store(read + 1, std::memory_order_release);
        return event;
    }
    /// The number of events lost since the last call.
    [[nodiscard]] quint64 takeLost() { return mLost.exchange(0, std::memory_order_relaxed); }

private:
    void add(const Event &event)
    {
        const std::size_t written = mWritten.load(std::memory_order_relaxed);
        if (written - mRead.load(std::memory_order_acquire) == capacity) {
            mLost.fetch_add(1, std::memory_order_relaxed);
            return;
        }
        mEvents[written % capacity] = event;
        mWritten.store(written + 1, std::memory_order_release);
    }

    std::array<Event, capacity> mEvents{};
    std::atomic<std::size_t> mWritten = 0;
    std::atomic<std::size_t> mRead = 0;
    std::atomic<quint64> mLost = 0;
    std::atomic<bool> mIsOn = false;
};
