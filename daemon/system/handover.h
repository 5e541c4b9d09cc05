// SPDX-License-Identifier: MIT
// Tells ThreadSanitizer what Qt's event queue guarantees: what a thread did before it posted an event is seen by the
// one that handles it. The distribution's Qt is built without ThreadSanitizer, which would take every such hand-over
// for a race. Does nothing otherwise. Any thread.
#pragma once

#include <atomic>
#include <utility>

namespace HandOver {

#if defined(__SANITIZE_THREAD__)
inline std::atomic<unsigned long> count = 0;

/// Before posting.
inline void give()
{
    count.fetch_add(1, std::memory_order_acq_rel);
}

/// First of all when handling.
inline void take()
{
    (void)count.load(std::memory_order_acquire);
}

/// Gives when it is copied, for what is copied before it.
struct Giver
{
    Giver() = default;
    Giver(const Giver &) { give(); }
    Giver &operator=(const Giver &) = delete;
};
#else
inline void give() {}
inline void take() {}
struct Giver
{
};
#endif

/// A function to be posted to another thread.
template <typename Function> struct Call
{
    Function function;
    [[no_unique_address]] Giver giver = {};

    void operator()()
    {
        take();
        function();
        give(); // to one who waits for it
    }
};

template <typename Function> Call(Function) -> Call<Function>;

} // namespace HandOver
