// SPDX-License-Identifier: MIT
// Stops a child process of the test. Any thread.
#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/wait.h>

/// Sends SIGSTOP to the child `processId` and returns when it has stopped. The signal alone stops no thread: under
/// load, the child may run on for a while. Also returns when the child ends.
inline void stopProcess(qint64 processId)
{
    const auto id = static_cast<pid_t>(processId);
    siginfo_t information = {};
    if (::kill(id, SIGSTOP) == 0)
        ::waitid(P_PID, static_cast<id_t>(id), &information, WSTOPPED | WEXITED | WNOWAIT);
}
