// SPDX-License-Identifier: MIT
// Waits, with a limit, for events that send no notification.
#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

/// The limit of a step's wait. The machine's clock counts instructions, so load on the host does not use up the limit.
/// A successful wait takes a small part of it.
inline constexpr std::chrono::seconds patience{20};

[[nodiscard]] inline std::chrono::milliseconds timeUntil(std::chrono::steady_clock::time_point end)
{
    return std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
}

/// True as soon as `condition` is; false when it is not within `patience`. The pauses grow: many conditions run a
/// program, which costs the emulator much, and idle time costs it nothing.
template <typename Condition> [[nodiscard]] bool becomesTrue(Condition condition)
{
    constexpr std::chrono::milliseconds longestPause{320};
    const auto end = std::chrono::steady_clock::now() + patience;
    for (std::chrono::milliseconds pause{5}; !condition(); pause = std::min(2 * pause, longestPause)) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}
