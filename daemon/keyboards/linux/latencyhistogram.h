// SPDX-License-Identifier: MIT
// Latencies of keys, counted in buckets. One thread adds (the key thread: no allocation, no lock); any thread reads.
#pragma once

#include "daemon/keyboards/devices.h"
#include "daemon/keyboards/linux/stallwatch.h"

#include <array>
#include <atomic>
#include <chrono>

/// Exact below 16 microseconds, above in eight buckets for each doubling: a result is at most an eighth too high.
class LatencyHistogram
{
public:
    /// The process ends if a key takes longer than this. A longer time is that of a process that did not run: the
    /// machine was asleep. Events have the times of CLOCK_MONOTONIC, and a suspend to idle does not stop that clock on
    /// every machine.
    static constexpr std::chrono::microseconds longest = StallWatch::usualLimit * 5 / 4;

    /// Ignores a latency above `longest`.
    void add(std::chrono::microseconds latency);
    void clear();
    [[nodiscard]] KeyLatency latency() const;

    [[nodiscard]] static std::size_t bucketOf(quint32 us);
    [[nodiscard]] static quint32 upperBound(std::size_t bucket); ///< the greatest value in the bucket

private:
    static constexpr std::size_t exactBuckets = 16;
    static constexpr std::size_t bucketCount = exactBuckets + 8 * 28; // up to 2^32 microseconds

    [[nodiscard]] quint32 percentile(quint64 count, quint64 percent) const;

    std::array<std::atomic<quint32>, bucketCount> mBuckets{};
    std::atomic<quint32> mMaximum = 0;
};
