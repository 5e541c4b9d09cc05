// SPDX-License-Identifier: MIT
#include "tests/vm/driver/latency.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/sleepingreader.h"
#include "tests/vm/driver/waiting.h"

#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr std::uint8_t usageB = 0x05;

/// `nextReadAt` waits for the next key and returns the time at which it was read.
template <typename Function> Latencies measure(UhidKeyboard &keyboard, int count, Function nextReadAt)
{
    Latencies times;
    for (int number = 0; number < count; ++number) {
        // Keys have pauses between them, in which the reader sleeps.
        std::this_thread::sleep_for(2ms);
        const EventNode::Time start = monotonicNow();
        (void)keyboard.setDown(usageB, number % 2 == 0);
        times.push_back(nextReadAt() - start);
    }
    return times;
}

} // namespace

Latencies measureLatency(UhidKeyboard &keyboard, EventNode &node, int count)
{
    SleepingReader reader(node);
    return measure(keyboard, count, [&reader] { return reader.nextReadAt(); });
}

Latencies measureLatencyForWriter(UhidKeyboard &keyboard, EventNode &node, int count)
{
    return measure(keyboard, count, [&node] {
        const auto key = node.next(patience);
        if (!key)
            throw Failure("a key did not come");
        return key->readAt;
    });
}
