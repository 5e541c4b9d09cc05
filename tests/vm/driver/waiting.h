// SPDX-License-Identifier: MIT
// Waiting for something that tells nobody when it happens, with a limit.
#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

/// How long a step waits. The machine's clock counts instructions, so that load on the host does not use it up; a wait
/// that ends well takes a small part of it.
inline constexpr std::chrono::seconds patience{20};

[[nodiscard]] inline std::chrono::milliseconds timeUntil(std::chrono::steady_clock::time_point end)
{
    return std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
}

/// True as soon as `condition` is; false when it was not within `patience`. The pauses grow: many conditions run a
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
