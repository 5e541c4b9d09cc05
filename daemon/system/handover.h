// SPDX-License-Identifier: MIT
// Describes to ThreadSanitizer a guarantee of Qt's event queue: the thread that handles an event sees everything that
// the posting thread did before. The distribution's Qt is built without ThreadSanitizer, which therefore reports each
// such hand-over as a race. Other builds compile this to nothing. Any thread.
#pragma once

#include <atomic>
#include <utility>

namespace HandOver {

#if defined(__SANITIZE_THREAD__)
inline std::atomic<unsigned long> count = 0;

/// Call before posting.
inline void give()
{
    count.fetch_add(1, std::memory_order_acq_rel);
}

/// Call first when handling.
inline void take()
{
    (void)count.load(std::memory_order_acquire);
}

/// Its copy constructor calls give(), for the members that are copied before it, and its destructor take(), for those
/// that are destroyed after it: either thread may be the last to need the call.
struct Giver
{
    Giver() = default;
    Giver(const Giver &) { give(); }
    ~Giver() { take(); }
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
        give(); // for a thread that waits for the call or destroys it
    }
};

template <typename Function> Call(Function) -> Call<Function>;

} // namespace HandOver
