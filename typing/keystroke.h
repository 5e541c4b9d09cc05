// SPDX-License-Identifier: MIT
// One press of a key, with the modifier keys that must be down. A value; any thread.
#pragma once

#include <array>
#include <cstdint>

/// The keys are usages of the Keyboard/Keypad page.
struct Keystroke
{
    static constexpr std::size_t maximumModifiers = 3;

    std::uint8_t key = 0;
    std::uint8_t modifierCount = 0;
    std::array<std::uint8_t, maximumModifiers>
        modifiers{}; ///< the first `modifierCount`, in the order of their presses

    bool operator==(const Keystroke &) const = default;
};
