// SPDX-License-Identifier: MIT
// The names of keys in scenarios. Outputs use the names of <linux/input-event-codes.h>, inputs the same names without
// KEY_. They are copied by hand from the HID Usage Tables 1.12, chapter 10, to find errors in the daemon's own table.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The usage of the keyboard page: a name ("A", "LeftShift") or a number ("0x64").
[[nodiscard]] std::optional<std::uint8_t> usageNamed(const std::string &name);
/// The usage of the Consumer page: a name ("VolumeUp"), a number, or "none" for 0.
[[nodiscard]] std::optional<std::uint16_t> mediaUsageNamed(const std::string &name);
/// The Linux key code: "KEY_A", "BTN_LEFT".
[[nodiscard]] std::optional<int> codeNamed(const std::string &name);
[[nodiscard]] std::string codeName(int code);
