// SPDX-License-Identifier: MIT
// What the calling thread has used of the machine, however long it had to wait for it: unlike a clock on the wall, the
// same on a busy machine.
#pragma once

#include <chrono>
#include <ctime>
#include <sys/resource.h>

/// Since the thread was started.
inline std::chrono::nanoseconds processorTime()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// From sleep, since the thread was started.
inline long timesWoken()
{
    rusage usage = {};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}
