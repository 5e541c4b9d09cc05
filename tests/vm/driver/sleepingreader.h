// SPDX-License-Identifier: MIT
// A separate process that sleeps until a key arrives, like a desktop, and reports when it has read the key.
#pragma once

#include "tests/vm/driver/eventnode.h"
#include "tests/vm/driver/filedescriptor.h"

#include <sys/types.h>

/// Ends with this object. No other process may read the event device meanwhile.
class SleepingReader
{
public:
    explicit SleepingReader(EventNode &node);
    ~SleepingReader();
    SleepingReader(const SleepingReader &) = delete;
    SleepingReader &operator=(const SleepingReader &) = delete;

    /// Waits for the next key. Returns when the key was read, by the reader's clock. Throws Failure when none arrives.
    [[nodiscard]] EventNode::Time nextReadAt();

private:
    FileDescriptor mTimes; // the reader writes them
    pid_t mId = 0;
};
