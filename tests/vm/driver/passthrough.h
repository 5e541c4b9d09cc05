// SPDX-License-Identifier: MIT
// The least that a program between a keyboard and the desktop can do: it reads the events and writes them, unchanged,
// to an event device of its own. The daemon is measured against it.
#pragma once

#include <string>

#include <sys/types.h>

/// A separate process that ends with this object. It grabs the keyboard; the desktop sees the events of `output`.
class PassThrough
{
public:
    enum class Priority {
        ordinary,
        realTime ///< that of the daemon's key thread
    };

    /// `keyboard` and `output`: the names of the event devices. Throws Failure when the keyboard cannot be opened.
    PassThrough(const std::string &keyboard, const std::string &output, Priority priority = Priority::ordinary);
    ~PassThrough();
    PassThrough(const PassThrough &) = delete;
    PassThrough &operator=(const PassThrough &) = delete;

private:
    pid_t mId = 0;
};
