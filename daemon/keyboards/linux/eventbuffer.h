// SPDX-License-Identifier: MIT
// Reads all available events of <linux/input.h> from a file at once. Owned by the owner of the file; one thread.
#pragma once

#include <array>
#include <cstddef>

#include <linux/input.h>

/// System calls are a large part of a key's cost. After a read that has emptied the file, it therefore does not read
/// again until poll() reports more.
class EventBuffer
{
public:
    static constexpr std::size_t capacity = 64; // more than one report of a keyboard

    enum class Result {
        event,
        nothing, ///< the last read emptied the file; poll() reports later events
        gone,    ///< the file cannot be read any more
    };

    /// `descriptor`: must not block, and must outlive this.
    explicit EventBuffer(int descriptor) : mDescriptor(descriptor) {}

    [[nodiscard]] Result next(input_event &event);
    /// Discards events that were read but not yet returned.
    void clear();

private:
    [[nodiscard]] Result read();

    int mDescriptor;
    std::size_t mCount = 0;
    std::size_t mNext = 0;
    std::array<input_event, capacity> mEvents{};
};
