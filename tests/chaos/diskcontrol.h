// SPDX-License-Identifier: MIT
// The state that a test shares with the disk of its daemon, in a file that both map. The library that acts as the disk
// (faultydiskshim.cpp) is loaded before the C library, so this header includes no Qt.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

/// The system calls by which the daemon changes its folder.
enum class DiskCall : std::uint32_t { open, write, flush, link, rename, remove };
inline constexpr std::size_t diskCallCount = 6;

/// Where the process can end: before a call, after it, and in the middle of a write.
enum class DeathPlace : std::uint32_t { before, within, after };
inline constexpr std::size_t deathPlaceCount = 3;

[[nodiscard]] constexpr std::uint32_t maskOf(DiskCall call)
{
    return 1U << static_cast<std::uint32_t>(call);
}

/// With all zeros, the disk has no faults.
struct DiskControl
{
    static constexpr const char *fileVariable = "KESTRA_TEST_DISK";          ///< the path of the mapped file
    static constexpr const char *folderVariable = "KESTRA_TEST_DISK_FOLDER"; ///< the disk has no other files

    /// The daemon kills itself with SIGKILL at this DeathPlace, counted from 1; 0: it lives.
    std::atomic<std::int32_t> placesToLive;
    /// Unflushed writes are lost with the process, as in a power cut.
    std::atomic<bool> losesUnflushed;

    std::atomic<std::uint32_t> failingCalls; ///< maskOf() of each, combined
    std::atomic<std::int32_t> failure;       ///< the errno value of these
    std::atomic<bool> isFull;                ///< writing fails with ENOSPC when `room` is used up
    std::atomic<std::int64_t> room;          ///< bytes
    std::atomic<bool> failsForFolders;       ///< faults affect flushes of folders, not those of files

    std::atomic<bool> holdsFlush; ///< a flush does not return while this is true
    std::atomic<std::int32_t> heldFlushes;

    std::atomic<std::int64_t> clockAheadMs; ///< how far the daemon's monotonic clocks are ahead

    std::array<std::array<std::atomic<std::uint32_t>, deathPlaceCount>, diskCallCount> deaths;
    std::array<std::atomic<std::uint32_t>, diskCallCount> calls;
};
