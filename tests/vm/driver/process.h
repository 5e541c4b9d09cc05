// SPDX-License-Identifier: MIT
// Starting programs and ending those that were started.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

struct ProcessResult
{
    int exitCode = -1;  ///< -1: ended by a signal
    std::string output; ///< standard output and error
};

/// Runs a program to its end.
[[nodiscard]] ProcessResult runProcess(const std::vector<std::string> &command);

/// A program that runs in the background and ends with this object.
class BackgroundProcess
{
public:
    BackgroundProcess() = default;
    /// Appends the program's output to the file `log`. Calls `prepare` in the new process before it runs the program,
    /// which it does only when `prepare` returns true.
    BackgroundProcess(const std::vector<std::string> &command, const std::string &log, bool (*prepare)() = nullptr);
    BackgroundProcess(BackgroundProcess &&other) noexcept;
    BackgroundProcess &operator=(BackgroundProcess &&other) noexcept;
    ~BackgroundProcess();

    [[nodiscard]] bool isRunning();
    [[nodiscard]] pid_t id() const { return mId; }
    /// Sends a signal and waits for the end.
    void end(int signal);
    void send(int signal) const;

private:
    pid_t mId = 0;
};
