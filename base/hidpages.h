// SPDX-License-Identifier: MIT
// The usage pages and usages that the daemon, the macros and kestractl name by number. Constants; any thread.
#pragma once

#include <QtGlobal>

/// From the USB HID Usage Tables; the keyboard's keys are in section 10.
namespace HidPages {

inline constexpr quint16 keyboard = 0x07; // Keyboard/Keypad page
inline constexpr quint16 button = 0x09;

} // namespace HidPages
