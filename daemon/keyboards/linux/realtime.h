// SPDX-License-Identifier: MIT
// Real-time priority and locked memory for a thread, so its keys do not wait for other programs. All of it is best
// effort: without it everything works, but later under load.
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <sys/types.h>

namespace Realtime {

/// The calling thread's id for RealtimeKit and the kernel.
[[nodiscard]] pid_t currentThread();

/// Gives the calling thread the lowest useful real-time priority (SCHED_FIFO; not inherited by programs that it
/// starts). The kernel then ends the process if the thread runs for a second without a pause. False if the system does
/// not allow it, which is usual.
[[nodiscard]] bool raiseCurrentThread();

/// Whether `thread` of this process has real-time priority at this moment. RealtimeKit takes it away from all threads
/// when a program occupies the processor.
[[nodiscard]] bool isRealTime(pid_t thread);

/// Requests the priority from RealtimeKit on `bus` for `thread` of this process. Must be called on the main thread, and
/// not again before `done`. Returns at once, and later calls `done` on the thread of `context` unless that is gone.
///
/// RealtimeKit requires that the kernel ends the process after a fixed time without a pause, usually 0.2 seconds. This
/// process can never raise that limit again, and its programs inherit it. A process of its own therefore tries first
/// whether RealtimeKit grants the priority. Without a grant, the limit of this process does not change.
void askRealtimeKit(const QDBusConnection &bus, pid_t thread, QObject *context,
                    const std::function<void(bool isGranted)> &done);

/// Locks the memory of the process when it is first used; unused memory costs nothing. If the user's limit
/// (RLIMIT_MEMLOCK) does not allow all of it, memory on the path of a key comes first. Before that, releases memory
/// that only the start has used, which would otherwise be locked too. Returns the locked bytes of address space; 0 for
/// none.
std::size_t lockMemory();

/// lockMemory() for no more than `budget` bytes.
std::size_t lockMostUsed(std::size_t budget);

} // namespace Realtime
