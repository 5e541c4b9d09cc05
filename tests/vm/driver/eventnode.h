// SPDX-License-Identifier: MIT
// An event node as a desktop reads it: found by its device's name, its keys one after the other.
#pragma once

#include "tests/vm/driver/filedescriptor.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

class EventNode
{
public:
    using Time = std::chrono::nanoseconds; // CLOCK_MONOTONIC

    struct Key
    {
        int code = 0;
        int value = 0; ///< 0 up, 1 down, 2 repeated
        Time readAt{};
    };

    /// The node whose device has this name, as soon as there is one. Throws Failure when there is none in time.
    /// `isAlone`: nobody else sees its events from now on, so that nothing is typed into the virtual machine.
    [[nodiscard]] static EventNode open(const std::string &deviceName, bool isAlone);
    [[nodiscard]] static bool exists(const std::string &deviceName);

    /// The next key, waiting at most this long. Motion, scan codes and ends of reports are left out. Throws Failure
    /// when the kernel has dropped events, absent also when the device is gone.
    [[nodiscard]] std::optional<Key> next(std::chrono::milliseconds limit);
    /// Sleeps until events come and reads all of them at once, until a key is among them that has gone down or up.
    /// Returns the moment after that read; absent when the device is gone.
    [[nodiscard]] std::optional<Time> sleepUntilKey();
    /// Only repetitions count for it.
    [[nodiscard]] const std::set<int> &down() const { return mDown; } ///< codes of the keys read as down
    void setLed(int code, bool isOn);
    /// From now on the key with this HID usage has another code, as a table of the system may say.
    void setCode(std::uint32_t scanCode, int code);
    [[nodiscard]] bool isGone() const { return mIsGone; }

private:
    explicit EventNode(FileDescriptor node) : mNode(std::move(node)) {}

    FileDescriptor mNode;
    std::set<int> mDown;
    bool mIsGone = false;
};

[[nodiscard]] EventNode::Time monotonicNow();
