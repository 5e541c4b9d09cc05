// SPDX-License-Identifier: MIT
// Converts between HID usages and Linux key codes, both ways by one table (keycodetable.inc). Compile-time constants;
// any thread, no allocation.
#pragma once

#include "base/hidusage.h"

#include <optional>

namespace KeyCodes {

inline constexpr quint16 codeCount = 0x300;   // KEY_CNT of <linux/input-event-codes.h>: codes are below it
inline constexpr quint16 firstButton = 0x110; // BTN_LEFT; the buttons of HID's Button page follow in their order
inline constexpr quint16 buttonCount = 16;
inline constexpr quint16 firstMacroKeyCode = 0x290; // KEY_MACRO1
inline constexpr quint16 firstMacroKey = 106;       // M1 is F15, see keys/keytable.inc
inline constexpr quint16 macroKeyCount = 5;

/// The code that the desktop sees for `usage`. A key of the keyboard page without a Linux name is KEY_UNKNOWN, as from
/// any keyboard. A usage on HidUsage::systemPage is its code. Absent for usages that are neither a key nor one of the
/// first 16 buttons.
[[nodiscard]] std::optional<quint16> linuxCode(HidUsage usage);

/// The key of the keyboard page for `code`, from a keyboard that reports only key codes. Absent for codes without an
/// assignable key (media keys, buttons). linuxCode() turns the result into `code` again.
[[nodiscard]] std::optional<HidUsage> usageOfCode(quint16 code);

/// The key as the system reports it, for any `code`: linuxCode() turns the result into `code` again. Codes without an
/// assignable key are on HidUsage::systemPage.
[[nodiscard]] HidUsage systemKeyOfCode(quint16 code);

/// The assignable key of a keyboard that also reports the HID usage (MSC_SCAN: page in the upper 16 bits). The usage
/// has priority over the key code of a driver or system table: it is what the key is labelled. Exception: if a key was
/// turned into one outside the keyboard page, it cannot be assigned. An example is a function key that the Fn key turns
/// into a media key.
[[nodiscard]] std::optional<HidUsage> usageOfScanCode(quint32 scanCode, quint16 code);

/// M1 to M5 of keyboards with dedicated codes for them (KEY_MACRO1 to KEY_MACRO5), which have priority over the HID
/// usage. Absent for every other code. Inline, because every press of a key asks for it.
[[nodiscard]] inline std::optional<HidUsage> macroKeyOfCode(quint16 code)
{
    if (code < firstMacroKeyCode || code >= firstMacroKeyCode + macroKeyCount)
        return {};
    return HidUsage{HidUsage::keyboardPage, static_cast<quint16>(firstMacroKey + code - firstMacroKeyCode)};
}

/// Keys that control the keyboard itself; they cannot be assigned.
enum class OwnKey { none, brighter, darker, lightSwitch, macro };
[[nodiscard]] OwnKey ownKey(quint16 code);

} // namespace KeyCodes
