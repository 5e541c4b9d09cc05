// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventbuffer.h"

#include <cerrno>
#include <unistd.h>

#include <utility>

EventBuffer::Result EventBuffer::next(input_event &event)
{
    if (mNext == mCount) {
        const bool isFileEmpty = mCount > 0 && mCount < capacity;
        clear();
        const Result result = isFileEmpty ? Result::nothing : read();
        if (result != Result::event)
            return result;
    }
    event = mEvents[mNext++];
    return Result::event;
}

void EventBuffer::clear()
{
    mCount = 0;
    mNext = 0;
}

EventBuffer::Result EventBuffer::read()
{
    ssize_t size = 0;
    do {
        size = ::read(mDescriptor, mEvents.data(), sizeof mEvents);
    } while (size < 0 && errno == EINTR); // a ReadNotifier does not report the same events again
    if (size < 0)
        return errno == EAGAIN ? Result::nothing : Result::gone;
    mCount = static_cast<std::size_t>(size) / sizeof(input_event);
    return mCount > 0 ? Result::event : Result::gone;
}
