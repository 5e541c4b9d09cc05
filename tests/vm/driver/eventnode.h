// SPDX-License-Identifier: MIT
// An event device as a desktop reads it: found by its name, key by key.
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

    /// Opens the event device with this name as soon as it exists. Throws Failure when it does not appear in time.
    /// `isAlone`: no other process receives its events from now on, so nothing is typed into the virtual machine.
    [[nodiscard]] static EventNode open(const std::string &deviceName, bool isAlone);
    [[nodiscard]] static bool exists(const std::string &deviceName);

    /// The next key, within this limit. Skips motion, scan codes and ends of reports. Throws Failure when the kernel
    /// has dropped events. Absent after the limit, and also when the device has disappeared.
    [[nodiscard]] std::optional<Key> next(std::chrono::milliseconds limit);
    /// The next value of a volume control, within `patience`; skips everything else. Absent after the limit.
    [[nodiscard]] std::optional<int> nextVolume();
    [[nodiscard]] bool isSwitchOn(unsigned int code) const;
    /// Sleeps until events arrive and reads all of them at once, until a key has gone down or up. Returns the moment
    /// after that read; absent when the device has disappeared.
    [[nodiscard]] std::optional<Time> sleepUntilKey();
    /// The codes of the keys read as down, even if only repetitions were read.
    [[nodiscard]] const std::set<int> &down() const { return mDown; }
    /// The codes of the keys that are down in the kernel now. The kernel then drops unread earlier key events.
    [[nodiscard]] std::set<int> downInKernel() const;
    void setLed(int code, bool isOn);
    /// From now on the key with this HID usage has another code, as a table of the system may define.
    void setCode(std::uint32_t scanCode, int code);
    [[nodiscard]] bool isGone() const { return mIsGone; }
    [[nodiscard]] int descriptor() const { return mNode.get(); }

private:
    explicit EventNode(FileDescriptor node) : mNode(std::move(node)) {}

    FileDescriptor mNode;
    std::set<int> mDown;
    bool mIsGone = false;
};

[[nodiscard]] EventNode::Time monotonicNow();
