// SPDX-License-Identifier: MIT
#include "platform/pendingcall.h"

#include <algorithm>
#include <thread>

bool pollUntilFinished(const QDBusPendingCall &call, const std::function<void()> &whileWaiting,
                       std::chrono::nanoseconds limit)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::microseconds longestPause{10'000};
    const Clock::time_point start = Clock::now();
    for (std::chrono::microseconds pause{50}; !call.isFinished(); pause = std::min(pause * 5 / 4, longestPause)) {
        if (Clock::now() - start >= limit)
            return false;
        std::this_thread::sleep_for(pause);
        whileWaiting();
    }
    return true;
}
