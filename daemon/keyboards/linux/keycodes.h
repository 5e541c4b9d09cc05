// SPDX-License-Identifier: MIT
// Which Linux key code a HID usage has, and which usage a key code: one table (keycodetable.inc) both ways. Constants
// made by the compiler; any thread, no allocation.
#pragma once

#include "daemon/engine/hidusage.h"

#include <optional>

namespace KeyCodes {

inline constexpr quint16 codeCount = 0x300;   // KEY_CNT of <linux/input-event-codes.h>: codes are below it
inline constexpr quint16 firstButton = 0x110; // BTN_LEFT; the buttons of HID's Button page follow in their order
inline constexpr quint16 buttonCount = 16;

/// What the desktop is to see of `usage`. A key of the keyboard page that Linux has no name for is KEY_UNKNOWN, as from
/// any keyboard; absent for what is neither a key nor one of the first 16 buttons.
[[nodiscard]] std::optional<quint16> linuxCode(HidUsage usage);

/// The key of the keyboard page that a keyboard means that gives nothing but key codes; absent for every other code
/// (media keys, buttons), which means no key that could be assigned. linuxCode() of it is `code` again.
[[nodiscard]] std::optional<HidUsage> usageOfCode(quint16 code);

/// The same for a keyboard that gives the HID usage, too (MSC_SCAN: page in the upper 16 bits). The usage counts, not
/// what a driver or a table of the system has made of it; but a key that was turned into one that is not on the
/// keyboard page at all (a function key into a media key, by the keyboard's Fn key) is meant as that.
[[nodiscard]] std::optional<HidUsage> usageOfScanCode(quint32 scanCode, quint16 code);

/// M1 to M5 of keyboards that have a code of their own for such keys (KEY_MACRO1 to KEY_MACRO5), which comes before
/// their HID usage; absent for every other code.
[[nodiscard]] std::optional<HidUsage> macroKeyOfCode(quint16 code);
/// The other way round: that code for the usage of M1 to M5; absent for every other.
[[nodiscard]] std::optional<quint16> macroKeyCode(HidUsage usage);

/// Keys that do something with the keyboard itself; nothing can be assigned to them.
enum class OwnKey { none, brighter, darker, lightSwitch, macro };
[[nodiscard]] OwnKey ownKey(quint16 code);

} // namespace KeyCodes
