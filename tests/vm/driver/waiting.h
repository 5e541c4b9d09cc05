// SPDX-License-Identifier: MIT
// Waiting for something that tells nobody when it happens, with a limit.
#pragma once

#include <chrono>
#include <thread>

/// Long enough for a slow emulator; a wait that ends well takes a small part of it.
inline constexpr std::chrono::seconds patience{20};

[[nodiscard]] inline std::chrono::milliseconds timeUntil(std::chrono::steady_clock::time_point end)
{
    return std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
}

/// True as soon as `condition` is; false when it was not within `patience`.
template <typename Condition> [[nodiscard]] bool becomesTrue(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}
