// SPDX-License-Identifier: MIT
#include "tests/support/heldlog.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>

HeldLog::HeldLog()
{
    if (::pipe2(mEnds.data(), O_CLOEXEC) != 0 || ::fcntl(mEnds[0], F_SETFL, O_NONBLOCK) != 0)
        qFatal("no pipe");
}

HeldLog::~HeldLog()
{
    for (const int end : mEnds)
        ::close(end);
}

void HeldLog::becomeStandardError() const
{
    ::dup2(mEnds[1], STDERR_FILENO);
}

void HeldLog::hold() const
{
    // The writer's end must continue to block, so the pipe is opened a second time.
    const std::string path = "/proc/self/fd/" + std::to_string(mEnds[1]);
    const int end = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    while (::write(end, "\n", 1) == 1) {
    }
    ::close(end);
}

void HeldLog::release() const
{
    std::array<char, 4096> lines{};
    while (::read(mEnds[0], lines.data(), lines.size()) > 0) {
    }
}
