// SPDX-License-Identifier: MIT
#include "tests/vm/driver/eventnode.h"

#include "tests/vm/driver/failure.h"
#include "tests/vm/driver/waiting.h"

#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>

namespace {

FileDescriptor openByName(const std::string &deviceName)
{
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator("/dev/input", error)) {
        if (!entry.path().filename().string().starts_with("event"))
            continue;
        FileDescriptor node(::open(entry.path().c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
        std::array<char, 256> name{};
        if (node && ::ioctl(node.get(), EVIOCGNAME(name.size() - 1), name.data()) >= 0 && deviceName == name.data())
            return node;
    }
    return {};
}

} // namespace

EventNode::Time monotonicNow()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

bool EventNode::exists(const std::string &deviceName)
{
    return bool(openByName(deviceName));
}

EventNode EventNode::open(const std::string &deviceName, bool isAlone)
{
    FileDescriptor node;
    const bool isFound = becomesTrue([&] {
        node = openByName(deviceName);
        return bool(node);
    });
    if (!isFound)
        throw Failure("no event node of \"" + deviceName + "\"");
    if (isAlone && ::ioctl(node.get(), EVIOCGRAB, 1) != 0)
        throw Failure("\"" + deviceName + "\" is grabbed by somebody else");
    return EventNode(std::move(node));
}

std::optional<EventNode::Key> EventNode::next(std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        input_event event{};
        const ssize_t size = ::read(mNode.get(), &event, sizeof event);
        if (size == sizeof event) {
            if (event.type == EV_SYN && event.code == SYN_DROPPED)
                throw Failure("the kernel has dropped events");
            if (event.type != EV_KEY)
                continue;
            if (event.value == 0)
                mDown.erase(event.code);
            else
                mDown.insert(event.code);
            return Key{.code = event.code, .value = event.value, .readAt = monotonicNow()};
        }
        if (errno == ENODEV) {
            mIsGone = true;
            mDown.clear();
            return {};
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return {};
        pollfd poll{.fd = mNode.get(), .events = POLLIN, .revents = 0};
        ::poll(&poll, 1, static_cast<int>(left.count()));
    }
}

std::optional<int> EventNode::nextVolume()
{
    std::optional<int> value;
    const bool isRead = becomesTrue([&] {
        input_event event{};
        while (!value && ::read(mNode.get(), &event, sizeof event) == sizeof event) {
            if (event.type == EV_ABS && event.code == ABS_VOLUME)
                value = event.value;
        }
        return value.has_value();
    });
    return isRead ? value : std::nullopt;
}

bool EventNode::isSwitchOn(unsigned int code) const
{
    std::array<unsigned char, SW_CNT / 8 + 1> bits{};
    if (::ioctl(mNode.get(), EVIOCGSW(bits.size()), bits.data()) < 0)
        throw Failure(std::string("switches: ") + std::strerror(errno));
    return (bits[code / 8] >> (code % 8)) & 1;
}

std::optional<EventNode::Time> EventNode::sleepUntilKey()
{
    for (;;) {
        pollfd poll{.fd = mNode.get(), .events = POLLIN, .revents = 0};
        ::poll(&poll, 1, -1);
        std::array<input_event, 64> events{};
        const ssize_t size = ::read(mNode.get(), events.data(), sizeof events);
        const Time readAt = monotonicNow();
        if (size < 0 && errno == ENODEV)
            return {};
        const auto count = size > 0 ? static_cast<std::size_t>(size) / sizeof(input_event) : 0;
        const bool hasKey = std::any_of(events.begin(), events.begin() + count, [](const input_event &event) {
            return event.type == EV_KEY && event.value != 2;
        });
        if (hasKey)
            return readAt;
    }
}

std::set<int> EventNode::downInKernel() const
{
    std::array<unsigned char, KEY_CNT / 8> bits{};
    if (::ioctl(mNode.get(), EVIOCGKEY(bits.size()), bits.data()) < 0)
        throw Failure(std::string("keys: ") + std::strerror(errno));
    std::set<int> codes;
    for (int code = 0; code < KEY_CNT; ++code) {
        if ((bits[static_cast<std::size_t>(code) / 8] >> (code % 8)) & 1)
            codes.insert(code);
    }
    return codes;
}

void EventNode::setLed(int code, bool isOn)
{
    const std::array<input_event, 2> events{
        input_event{.time = {}, .type = EV_LED, .code = static_cast<std::uint16_t>(code), .value = isOn},
        input_event{.time = {}, .type = EV_SYN, .code = SYN_REPORT, .value = 0}};
    if (::write(mNode.get(), events.data(), sizeof events) != sizeof events)
        throw Failure(std::string("LED: ") + std::strerror(errno));
}

void EventNode::setCode(std::uint32_t scanCode, int code)
{
    input_keymap_entry entry{};
    entry.len = sizeof scanCode;
    entry.keycode = static_cast<std::uint32_t>(code);
    std::memcpy(entry.scancode, &scanCode, sizeof scanCode);
    if (::ioctl(mNode.get(), EVIOCSKEYCODE_V2, &entry) != 0)
        throw Failure(std::string("key code: ") + std::strerror(errno));
}
