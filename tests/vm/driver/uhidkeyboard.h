// SPDX-License-Identifier: MIT
// A keyboard that the kernel accepts as a real one: created through /dev/uhid, driven by its HID reports.
#pragma once

#include "tests/vm/driver/filedescriptor.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class UhidKeyboard
{
public:
    enum class Kind {
        plain,    ///< a boot keyboard: modifiers and six keys
        media,    ///< the same with media keys, which the kernel puts into the same event device
        several,  ///< the same with a keypad and a pointer, which are separate event devices
        everyKey, ///< modifiers and a bit for each of the 232 usages
        noKeys,   ///< calls itself a keyboard but has no keys
        strange,  ///< usages far outside the range of a keyboard
        pointing, ///< also moves the pointer, in the same event device
        lit,      ///< key lighting, which a separate driver makes an LED of the kernel
    };

    struct Identity
    {
        std::string name;
        std::string serial;
        std::uint16_t vendor = 0x1209; // for tests
        std::uint16_t product = 1;
        Kind kind = Kind::plain;
    };

    /// Plugs it in. Throws Failure when the kernel does not accept it.
    explicit UhidKeyboard(Identity identity);

    [[nodiscard]] const Identity &identity() const { return mIdentity; }

    /// Sends one report: exactly these usages of the keyboard page are down.
    void report(std::span<const std::uint8_t> usages);
    /// Sends a report with one more or one fewer key down. Returns false when the report has no room for the key.
    [[nodiscard]] bool setDown(std::uint8_t usage, bool isDown);
    void releaseAll();
    /// Sends one report of the media keys: this usage of the Consumer page is down, 0 for none. Kind::media and
    /// several.
    void reportMedia(std::uint16_t usage);
    /// Sends one report of the keypad: this usage of the keyboard page is down, 0 for none. Kind::several only.
    void reportKeypad(std::uint8_t usage);
    /// Several parts of the device send reports, which the kernel distinguishes by their numbers.
    [[nodiscard]] bool hasSeveralParts() const
    {
        return mIdentity.kind == Kind::media || mIdentity.kind == Kind::several;
    }
    /// Sends bytes that are not a report of this keyboard.
    void sendBroken(std::span<const std::uint8_t> bytes);

    /// The LED bits (of the HID LED page, from Num Lock up) that the kernel has set last; does not wait.
    [[nodiscard]] int leds();
    /// The brightness that the kernel has set last (Kind::lit); -1 before the first. Does not wait.
    [[nodiscard]] int brightness();

private:
    void readOutputs();
    void send(std::span<const std::uint8_t> bytes);

    Identity mIdentity;
    FileDescriptor mDevice;
    std::vector<std::uint8_t> mDown;
    int mLeds = 0;
    int mBrightness = -1;
};

/// The report descriptor of a kind.
[[nodiscard]] std::vector<std::uint8_t> reportDescriptor(UhidKeyboard::Kind kind);
