// SPDX-License-Identifier: MIT
#include "tests/vm/driver/process.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/filedescriptor.h"
#include "tests/vm/driver/waiting.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void become(const std::vector<std::string> &command, int output)
{
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    std::vector<char *> arguments;
    for (const std::string &word : command)
        arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
}

} // namespace

ProcessResult runProcess(const std::vector<std::string> &command)
{
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw Failure("no pipe");
    FileDescriptor readEnd(pipe[0]);
    FileDescriptor writeEnd(pipe[1]);
    const pid_t child = ::fork();
    if (child == 0)
        become(command, writeEnd.get());
    writeEnd = {};
    ProcessResult result;
    std::array<char, 4096> part{};
    for (ssize_t size = 0; (size = ::read(readEnd.get(), part.data(), part.size())) > 0;)
        result.output.append(part.data(), static_cast<std::size_t>(size));
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
    return result;
}

BackgroundProcess::BackgroundProcess(const std::vector<std::string> &command, const std::string &log,
                                     bool (*prepare)())
{
    const FileDescriptor output(::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
    mId = ::fork();
    if (mId == 0 && prepare && !prepare())
        ::_exit(127);
    if (mId == 0)
        become(command, output.get());
}

BackgroundProcess::BackgroundProcess(BackgroundProcess &&other) noexcept : mId(std::exchange(other.mId, 0)) {}

BackgroundProcess &BackgroundProcess::operator=(BackgroundProcess &&other) noexcept
{
    std::swap(mId, other.mId);
    return *this;
}

BackgroundProcess::~BackgroundProcess()
{
    if (isRunning())
        end(SIGKILL);
}

bool BackgroundProcess::isRunning()
{
    if (mId > 0 && ::waitpid(mId, nullptr, WNOHANG) != 0)
        mId = 0;
    return mId > 0;
}

void BackgroundProcess::send(int signal) const
{
    if (mId > 0)
        ::kill(mId, signal);
}

void BackgroundProcess::end(int signal)
{
    send(signal);
    if (!becomesTrue([this] { return !isRunning(); })) {
        send(SIGKILL);
        throw Failure("a program did not end");
    }
}
