// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/latencyhistogram.h"

#include <algorithm>
#include <bit>

namespace {

constexpr int exactBits = 4;
constexpr std::size_t bucketsPerDoubling = 8;

} // namespace

void LatencyHistogram::add(std::chrono::microseconds latency)
{
    if (latency > longest)
        return;
    const auto us = static_cast<quint32>(std::max<qint64>(latency.count(), 0));
    // There is only one writer, so readers need nothing but whole values.
    std::atomic<quint32> &bucket = mBuckets[bucketOf(us)];
    bucket.store(bucket.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    if (us > mMaximum.load(std::memory_order_relaxed))
        mMaximum.store(us, std::memory_order_relaxed);
}

void LatencyHistogram::clear()
{
    for (std::atomic<quint32> &bucket : mBuckets)
        bucket.store(0, std::memory_order_relaxed);
    mMaximum.store(0, std::memory_order_relaxed);
}

KeyLatency LatencyHistogram::latency() const
{
    quint64 count = 0;
    for (const std::atomic<quint32> &bucket : mBuckets)
        count += bucket.load(std::memory_order_relaxed);
    if (count == 0)
        return {};
    const quint32 maximum = mMaximum.load(std::memory_order_relaxed);
    return {.count = count,
            .p50Us = std::min(percentile(count, 50), maximum),
            .p99Us = std::min(percentile(count, 99), maximum),
            .maximumUs = maximum};
}

std::size_t LatencyHistogram::bucketOf(quint32 us)
{
    if (us < exactBuckets)
        return us;
    const int doubling = std::bit_width(us) - 1 - exactBits; // 0 for 16 to 31
    const std::size_t part = (us >> (doubling + 1)) & (bucketsPerDoubling - 1);
    return exactBuckets + static_cast<std::size_t>(doubling) * bucketsPerDoubling + part;
}

quint32 LatencyHistogram::upperBound(std::size_t bucket)
{
    if (bucket < exactBuckets)
        return static_cast<quint32>(bucket);
    const std::size_t doubling = (bucket - exactBuckets) / bucketsPerDoubling;
    const std::size_t part = (bucket - exactBuckets) % bucketsPerDoubling;
    const quint64 width = quint64(1) << (doubling + 1);
    return static_cast<quint32>((bucketsPerDoubling + part + 1) * width - 1);
}

quint32 LatencyHistogram::percentile(quint64 count, quint64 percent) const
{
    const quint64 rank = (count * percent + 99) / 100; // of the ordered values, from 1
    quint64 seen = 0;
    for (std::size_t bucket = 0; bucket < bucketCount; ++bucket) {
        seen += mBuckets[bucket].load(std::memory_order_relaxed);
        if (seen >= rank)
            return upperBound(bucket);
    }
    return mMaximum.load(std::memory_order_relaxed);
}
