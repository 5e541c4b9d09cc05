// SPDX-License-Identifier: MIT
// The least that a program between a keyboard and the desktop can do: it reads the events and writes them, unchanged,
// to an event device of its own. The daemon is measured against it.
#pragma once

#include <string>

#include <sys/types.h>

/// A separate process that ends with this object. It grabs the keyboard; the desktop sees the events of `name`.
class PassThrough
{
public:
    static constexpr const char *name = "Pass-through output"; // of the event device

    /// `keyboard`: the name of its event device. Throws Failure when the device cannot be opened.
    explicit PassThrough(const std::string &keyboard);
    ~PassThrough();
    PassThrough(const PassThrough &) = delete;
    PassThrough &operator=(const PassThrough &) = delete;

private:
    pid_t mId = 0;
};
