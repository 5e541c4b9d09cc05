// SPDX-License-Identifier: MIT
#include "tests/vm/driver/sleepingreader.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/waiting.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

/// The reading process.
[[noreturn]] void readForEver(EventNode &node, int times)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    while (const auto readAt = node.sleepUntilKey()) {
        if (::write(times, &*readAt, sizeof *readAt) != sizeof *readAt)
            break;
    }
    ::_exit(0); // the closed pipe reports the end
}

} // namespace

SleepingReader::SleepingReader(EventNode &node)
{
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw Failure("no pipe");
    mTimes = FileDescriptor(pipe[0]);
    const FileDescriptor writeEnd(pipe[1]);
    mId = ::fork();
    if (mId < 0)
        throw Failure("no process");
    if (mId == 0)
        readForEver(node, writeEnd.get());
}

SleepingReader::~SleepingReader()
{
    ::kill(mId, SIGKILL);
    ::waitpid(mId, nullptr, 0);
}

EventNode::Time SleepingReader::nextReadAt()
{
    pollfd poll{.fd = mTimes.get(), .events = POLLIN, .revents = 0};
    const auto limit = std::chrono::milliseconds(patience).count();
    EventNode::Time readAt{};
    if (::poll(&poll, 1, static_cast<int>(limit)) != 1 || ::read(mTimes.get(), &readAt, sizeof readAt) != sizeof readAt)
        throw Failure("a key did not come");
    return readAt;
}
