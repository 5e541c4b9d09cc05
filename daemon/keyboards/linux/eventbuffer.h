// SPDX-License-Identifier: MIT
// Reads events of <linux/input.h> from a file, as many at once as there are. Owned by who owns the file; one thread.
#pragma once

#include <array>
#include <cstddef>

#include <linux/input.h>

/// Each call of the system is a good part of what a key takes. So the file is not asked again after a read that has
/// emptied it: whoever polls is told when there is more.
class EventBuffer
{
public:
    static constexpr std::size_t capacity = 64; // more than a report of a keyboard has

    enum class Result {
        event,
        nothing, ///< the file was empty when it was last read; what has come since shows in it
        gone,    ///< it cannot be read any more
    };

    /// `descriptor`: does not block, and must live longer.
    explicit EventBuffer(int descriptor) : mDescriptor(descriptor) {}

    [[nodiscard]] Result next(input_event &event);
    /// Forgets what was read and not yet returned.
    void clear();

private:
    [[nodiscard]] Result read();

    int mDescriptor;
    std::size_t mCount = 0;
    std::size_t mNext = 0;
    std::array<input_event, capacity> mEvents{};
};
