// SPDX-License-Identifier: MIT
// What the system lets a thread have so that its keys do not wait for other programs: real-time priority, and memory
// that stays in memory. All of it is best effort; without it everything works, only later under load.
#pragma once

#include <QObject>

#include <functional>
#include <sys/types.h>

namespace Realtime {

/// The thread id that RealtimeKit and the kernel know the calling thread by.
[[nodiscard]] pid_t currentThread();

/// Gives the calling thread the lowest useful real-time priority (SCHED_FIFO; programs that it starts do not have it),
/// and has the kernel end the process when the thread keeps the processor for a second without a pause. False when the
/// system does not let it, which is usual.
[[nodiscard]] bool raiseCurrentThread();

/// Asks RealtimeKit over the system bus to do the same for `thread` of this process. To be called from the main thread,
/// once; returns at once and calls `done` on the thread of `context`, unless that is gone. The kernel then ends the
/// process after a fifth of a second without a pause, which RealtimeKit insists on.
void askRealtimeKit(pid_t thread, QObject *context, const std::function<void(bool isRealTime)> &done);

/// Has what the process uses locked in memory as it is touched; what is never touched costs nothing. Where the limit of
/// the user (RLIMIT_MEMLOCK) does not let it lock all, what the path of a key needs comes first.
/// Returns the bytes of address space that are locked; 0 for none.
std::size_t lockMemory();

/// lockMemory() for no more than `budget` bytes.
std::size_t lockMostUsed(std::size_t budget);

} // namespace Realtime
