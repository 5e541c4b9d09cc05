// SPDX-License-Identifier: MIT
#include "tests/vm/driver/keynames.h"

#include <libevdev/libevdev.h>
#include <linux/input-event-codes.h>

#include <charconv>
#include <map>

namespace {

const std::map<std::string, std::uint8_t> keys{
    {"Enter", 0x28},      {"Escape", 0x29},    {"Backspace", 0x2A}, {"Tab", 0x2B},      {"Space", 0x2C},
    {"CapsLock", 0x39},   {"F1", 0x3A},        {"F2", 0x3B},        {"F3", 0x3C},       {"F12", 0x45},
    {"Left", 0x50},       {"Right", 0x4F},     {"Menu", 0x65},      {"F13", 0x68},      {"F24", 0x73},
    {"LeftCtrl", 0xE0},   {"LeftShift", 0xE1}, {"LeftAlt", 0xE2},   {"LeftMeta", 0xE3}, {"RightCtrl", 0xE4},
    {"RightShift", 0xE5}, {"RightAlt", 0xE6},  {"RightMeta", 0xE7},
};

const std::map<std::string, std::uint16_t> mediaKeys{{"none", 0},        {"Play", 0xCD},       {"Mute", 0xE2},
                                                     {"VolumeUp", 0xE9}, {"VolumeDown", 0xEA}, {"Calculator", 0x192}};

std::optional<int> number(const std::string &text)
{
    const bool isHexadecimal = text.starts_with("0x");
    const char *const begin = text.data() + (isHexadecimal ? 2 : 0);
    const char *const end = text.data() + text.size();
    int value = 0;
    const auto [last, error] = std::from_chars(begin, end, value, isHexadecimal ? 16 : 10);
    if (error != std::errc() || last != end)
        return {};
    return value;
}

} // namespace

std::optional<std::uint8_t> usageNamed(const std::string &name)
{
    if (name.size() == 1 && name[0] >= 'A' && name[0] <= 'Z')
        return static_cast<std::uint8_t>(0x04 + name[0] - 'A');
    if (name.size() == 1 && name[0] >= '1' && name[0] <= '9')
        return static_cast<std::uint8_t>(0x1E + name[0] - '1');
    if (const auto found = keys.find(name); found != keys.end())
        return found->second;
    const std::optional<int> value = name.starts_with("0x") ? number(name) : std::nullopt;
    if (!value || *value < 0 || *value > 0xFF)
        return {};
    return static_cast<std::uint8_t>(*value);
}

std::optional<std::uint16_t> mediaUsageNamed(const std::string &name)
{
    if (const auto found = mediaKeys.find(name); found != mediaKeys.end())
        return found->second;
    const std::optional<int> value = number(name);
    if (!value || *value < 0 || *value > 0xFFFF)
        return {};
    return static_cast<std::uint16_t>(*value);
}

std::optional<int> codeNamed(const std::string &name)
{
    const int code = libevdev_event_code_from_name(EV_KEY, name.c_str());
    return code < 0 ? std::nullopt : std::optional(code);
}

std::string codeName(int code)
{
    const char *const name = libevdev_event_code_get_name(EV_KEY, static_cast<unsigned>(code));
    return name ? name : "code " + std::to_string(code);
}
