// SPDX-License-Identifier: MIT
// Owns a file descriptor. A movable value.
#pragma once

#include <unistd.h>

#include <utility>

class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : mDescriptor(descriptor) {}
    FileDescriptor(FileDescriptor &&other) noexcept : mDescriptor(std::exchange(other.mDescriptor, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(mDescriptor, other.mDescriptor);
        return *this;
    }
    ~FileDescriptor()
    {
        if (mDescriptor >= 0)
            ::close(mDescriptor);
    }

    [[nodiscard]] int get() const { return mDescriptor; }
    explicit operator bool() const { return mDescriptor >= 0; }

private:
    int mDescriptor = -1;
};
