// SPDX-License-Identifier: MIT
// How long ago something was, also for a process that stood still meanwhile and for a machine that slept. Any thread.
#pragma once

#include <chrono>
#include <ctime>

/// The time since the machine was started.
[[nodiscard]] inline std::chrono::microseconds timeSinceBoot()
{
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::seconds(time.tv_sec)
                                                                 + std::chrono::nanoseconds(time.tv_nsec));
}
