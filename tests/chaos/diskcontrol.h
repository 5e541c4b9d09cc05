// SPDX-License-Identifier: MIT
// What a test and the disk of its daemon share: a file that both map. The library that plays the disk
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

/// All zeros is a disk without faults.
struct DiskControl
{
    static constexpr const char *fileVariable = "KESTRA_TEST_DISK";          ///< the path of the mapped file
    static constexpr const char *folderVariable = "KESTRA_TEST_DISK_FOLDER"; ///< only files in this folder are meant

    /// How many places of DeathPlace the daemon passes until it ends itself by SIGKILL; 0: it lives.
    std::atomic<std::int32_t> placesToLive;
    /// What was written and not flushed is lost with the process, as when the power fails.
    std::atomic<bool> losesUnflushed;

    std::atomic<std::uint32_t> failingCalls; ///< maskOf() each
    std::atomic<std::int32_t> failure;       ///< errno value of these
    std::atomic<bool> isFull;                ///< writing fails with ENOSPC when `room` is used up
    std::atomic<std::int64_t> room;          ///< bytes
    std::atomic<bool> failsForFolders;       ///< only the flush of a folder fails, not that of a file

    std::atomic<bool> holdsFlush; ///< a flush does not return while this is true
    std::atomic<std::int32_t> heldFlushes;

    std::atomic<std::int64_t> clockAheadMs; ///< by which the daemon's clocks that only go forward are ahead

    std::array<std::array<std::atomic<std::uint32_t>, deathPlaceCount>, diskCallCount> deaths;
    std::array<std::atomic<std::uint32_t>, diskCallCount> calls;
};
