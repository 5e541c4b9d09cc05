// SPDX-License-Identifier: MIT
// The random profiles and macros of a storm, for the model and for the daemon.
#pragma once

#include "tests/support/keymodel.h"
#include "tests/vm/driver/machine.h"

#include <array>
#include <cstdint>
#include <random>
#include <vector>

class StormProfiles
{
public:
    using Key = KeyModel::Key;

    /// A to G, N, Z, Caps Lock, Left Control, Left Shift, Right Alt, Left Meta
    static constexpr std::array<std::uint8_t, 14> pressedKeys{0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A,
                                                              0x11, 0x1D, 0x39, 0xE0, 0xE1, 0xE6, 0xE3};
    static constexpr const char *application = "org.example.Storm";
    static constexpr int boundProfile = 3;

    explicit StormProfiles(std::mt19937 &random);

    /// Adds them to the settings of the daemon.
    void install(Machine &machine) const;

    [[nodiscard]] static int codeOf(Key key);
    /// The last key that macro `number` presses and releases in each round; no other key sends it.
    [[nodiscard]] static Key endOfRound(int number) { return 0x70 + number; }
    /// Whether only macros send this code.
    [[nodiscard]] static bool isOfMacro(int code);

    std::vector<KeyModel::Profile> profiles; ///< the first one is the factory's: default keys
    std::vector<KeyModel::Macro> macros;
};
