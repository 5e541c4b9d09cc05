// SPDX-License-Identifier: MIT
// A clock that keeps running while the process is stopped or the machine sleeps. Any thread.
#pragma once

#include <chrono>
#include <ctime>

/// The time since the machine was started, including sleep.
[[nodiscard]] inline std::chrono::microseconds timeSinceBoot()
{
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::seconds(time.tv_sec)
                                                                 + std::chrono::nanoseconds(time.tv_nsec));
}
