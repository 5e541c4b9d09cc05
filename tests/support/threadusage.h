// SPDX-License-Identifier: MIT
// The machine resources that the calling thread has used, without the time it waited for them. Unlike elapsed time,
// they are the same on a busy machine.
#pragma once

#include <chrono>
#include <ctime>
#include <sys/resource.h>

/// Processor time since the thread was started.
inline std::chrono::nanoseconds processorTime()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// How often the thread was woken from sleep since it was started.
inline long timesWoken()
{
    rusage usage = {};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}
