// SPDX-License-Identifier: MIT
// The outcome of a command of kestractl, and of its steps. Any thread.
#pragma once

#include "base/result.h"
#include "cli/exitcode.h"

/// Why a command has failed, and the exit code for it.
struct CommandError : Error
{
    ExitCode code = ExitCode::refused;
};

template <typename T> using CommandResult = Result<T, CommandError>;

/// An argument or option that means nothing.
[[nodiscard]] inline CommandError wrongUsage(const QString &message)
{
    return {{message}, ExitCode::usage};
}
