// SPDX-License-Identifier: MIT
// A key or a button, identified as in the USB HID Usage Tables. A value; any thread.
#pragma once

#include "base/hidpages.h"

#include <compare>

struct HidUsage
{
    static constexpr quint16 keyboardPage = HidPages::keyboard;
    static constexpr quint16 buttonPage = HidPages::button;
    static constexpr quint16 consumerPage = 0x0C;
    static constexpr quint16 systemPage = 0xFFFF; // not of HID: a key code of the system that has no usage
    static constexpr quint16 brightnessUp = 0x79; // Consumer page: Keyboard Brightness Increment
    static constexpr quint16 brightnessDown = 0x7A;
    static constexpr quint16 firstKey = 4;
    static constexpr quint16 lastKey = 231;
    static constexpr quint16 firstModifier = 224; // Left Control; one modifier bit per key from here on
    static constexpr quint16 leftCommand = 227;
    static constexpr quint16 rightCommand = 231;

    static constexpr quint16 firstButton = 1; // the buttons that a macro can have
    static constexpr quint16 lastMacroButton = 9;

    quint16 page = keyboardPage;
    quint16 usage = 0;

    auto operator<=>(const HidUsage &) const = default;

    [[nodiscard]] constexpr bool isModifier() const
    {
        return page == keyboardPage && usage >= firstModifier && usage <= lastKey;
    }
    [[nodiscard]] constexpr bool isCommand() const
    {
        return page == keyboardPage && (usage == leftCommand || usage == rightCommand);
    }
    /// The key's bit of the modifier byte; 0 for a key that is not a modifier.
    [[nodiscard]] constexpr quint8 modifierBit() const
    {
        return isModifier() ? static_cast<quint8>(1 << (usage - firstModifier)) : 0;
    }

    /// Usage page in the upper 16 bits, usage in the lower 16 bits, as in HID descriptors.
    [[nodiscard]] constexpr quint32 extended() const { return (quint32(page) << 16) | usage; }
};
