// SPDX-License-Identifier: MIT
// A process of its own that sleeps until a key comes, as a desktop does, and tells when it has read it.
#pragma once

#include "tests/vm/driver/eventnode.h"
#include "tests/vm/driver/filedescriptor.h"

#include <sys/types.h>

/// Ended with this object. Nobody else is to read the node meanwhile.
class SleepingReader
{
public:
    explicit SleepingReader(EventNode &node);
    ~SleepingReader();
    SleepingReader(const SleepingReader &) = delete;
    SleepingReader &operator=(const SleepingReader &) = delete;

    /// When the next key had been read, by the reader's clock; waits for it. Throws Failure when none comes.
    [[nodiscard]] EventNode::Time nextReadAt();

private:
    FileDescriptor mTimes; // the reader writes them
    pid_t mId = 0;
};
