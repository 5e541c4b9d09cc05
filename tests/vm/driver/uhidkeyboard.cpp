// SPDX-License-Identifier: MIT
#include "tests/vm/driver/uhidkeyboard.h"

#include "tests/vm/driver/failure.h"

#include <fcntl.h>
#include <linux/input.h>
#include <linux/uhid.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t firstModifier = 0xE0;
constexpr std::size_t bootKeys = 6;
constexpr std::uint8_t keyboardReport = 1; // report numbers of keyboards with several parts
constexpr std::uint8_t mediaReport = 2;
constexpr std::uint8_t keypadReport = 3;
constexpr std::uint8_t pointerReport = 4;
constexpr std::uint8_t rollOver = 1; // in all six places: more keys are down than a report can contain

// Descriptors as in the Device Class Definition for HID 1.11, appendix B.1 (the boot keyboard).
const Bytes usageKeyboard{0x05, 0x01, 0x09, 0x06, 0xA1, 0x01};
const Bytes modifierBits{0x05, 0x07, 0x19, 0xE0, 0x29, 0xE7, 0x15, 0x00,
                         0x25, 0x01, 0x75, 0x01, 0x95, 0x08, 0x81, 0x02};
const Bytes reservedByte{0x95, 0x01, 0x75, 0x08, 0x81, 0x01};
const Bytes leds{0x95, 0x05, 0x75, 0x01, 0x05, 0x08, 0x19, 0x01, 0x29,
                 0x05, 0x91, 0x02, 0x95, 0x01, 0x75, 0x03, 0x91, 0x01};
const Bytes sixKeys{0x95, 0x06, 0x75, 0x08, 0x15, 0x00, 0x26, 0xFF, 0x00,
                    0x05, 0x07, 0x19, 0x00, 0x2A, 0xFF, 0x00, 0x81, 0x00};
const Bytes everyKeyBit{0x05, 0x07, 0x19, 0x00, 0x29, 0xDF, 0x15, 0x00, 0x25, 0x01, 0x75, 0x01, 0x95, 0xE0, 0x81, 0x02};
const Bytes endCollection{0xC0};
const Bytes mediaKeys{0x05, 0x0C, 0x09, 0x01, 0xA1, 0x01, 0x85, mediaReport, 0x15, 0x00, 0x26, 0xFF, 0x02,
                      0x19, 0x00, 0x2A, 0xFF, 0x02, 0x75, 0x10, 0x95,        0x01, 0x81, 0x00, 0xC0};
const Bytes keypad{0x05, 0x01, 0x09, 0x07, 0xA1, 0x01, 0x85, keypadReport, 0x05, 0x07, 0x15, 0x00, 0x26, 0xFF,
                   0x00, 0x19, 0x00, 0x2A, 0xFF, 0x00, 0x75, 0x08,         0x95, 0x01, 0x81, 0x00, 0xC0};
const Bytes pointer{0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0x85, pointerReport, 0x05, 0x09, 0x19, 0x01,
                    0x29, 0x03, 0x15, 0x00, 0x25, 0x01, 0x75, 0x01,          0x95, 0x03, 0x81, 0x02,
                    0x75, 0x05, 0x95, 0x01, 0x81, 0x01, 0x05, 0x01,          0x09, 0x30, 0x09, 0x31,
                    0x15, 0x81, 0x25, 0x7F, 0x75, 0x08, 0x95, 0x02,          0x81, 0x06, 0xC0};
const Bytes twoAxes{0x05, 0x01, 0x09, 0x30, 0x09, 0x31, 0x15, 0x81, 0x25, 0x7F, 0x75, 0x08, 0x95, 0x02, 0x81, 0x06};
// A keyboard only by name, with one vendor-defined byte.
const Bytes nothingButAByte{0x06, 0x00, 0xFF, 0x09, 0x01, 0x15, 0x00, 0x26,
                            0xFF, 0x00, 0x75, 0x08, 0x95, 0x01, 0x81, 0x02};
// Six keys with usages up to 0xFFFF.
const Bytes sixWideKeys{0x95, 0x06, 0x75, 0x10, 0x15, 0x00, 0x27, 0xFF, 0xFF, 0x00,
                        0x00, 0x05, 0x07, 0x19, 0x00, 0x2A, 0xFF, 0x7F, 0x81, 0x00};

// Usage Brightness of the page Auxiliary Display, 0 to 100.
const Bytes brightnessByte{0x05, 0x14, 0x09, 0x46, 0x15, 0x00, 0x25, 0x64, 0x75, 0x08, 0x95, 0x01, 0x91, 0x02};
// One of the keyboards of hid-google-hammer, because the kernel provides key lighting only through a specific driver.
constexpr std::uint16_t litVendor = 0x18D1;
constexpr std::uint16_t litProduct = 0x5022;

Bytes joined(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

Bytes numberedKeyboard()
{
    return joined({usageKeyboard, {0x85, keyboardReport}, modifierBits, reservedByte, leds, sixKeys, endCollection});
}

void write(const FileDescriptor &device, const uhid_event &event)
{
    if (::write(device.get(), &event, sizeof event) != sizeof event)
        throw Failure(std::string("/dev/uhid: ") + std::strerror(errno));
}

} // namespace

Bytes reportDescriptor(UhidKeyboard::Kind kind)
{
    using Kind = UhidKeyboard::Kind;
    switch (kind) {
    case Kind::plain: return joined({usageKeyboard, modifierBits, reservedByte, leds, sixKeys, endCollection});
    case Kind::media: return joined({numberedKeyboard(), mediaKeys});
    case Kind::several: return joined({numberedKeyboard(), mediaKeys, keypad, pointer});
    case Kind::everyKey: return joined({usageKeyboard, modifierBits, everyKeyBit, endCollection});
    case Kind::noKeys: return joined({usageKeyboard, nothingButAByte, endCollection});
    case Kind::strange: return joined({usageKeyboard, modifierBits, sixWideKeys, endCollection});
    case Kind::pointing: return joined({usageKeyboard, modifierBits, reservedByte, sixKeys, twoAxes, endCollection});
    case Kind::lit: return joined({usageKeyboard, modifierBits, reservedByte, sixKeys, brightnessByte, endCollection});
    }
    return {};
}

UhidKeyboard::UhidKeyboard(Identity identity)
    : mIdentity(std::move(identity)), mDevice(::open("/dev/uhid", O_RDWR | O_CLOEXEC | O_NONBLOCK))
{
    if (!mDevice)
        throw Failure(std::string("/dev/uhid: ") + std::strerror(errno));
    const Bytes descriptor = reportDescriptor(mIdentity.kind);
    uhid_event event{};
    event.type = UHID_CREATE2;
    uhid_create2_req &create = event.u.create2;
    mIdentity.name.copy(reinterpret_cast<char *>(create.name), sizeof create.name - 1);
    mIdentity.serial.copy(reinterpret_cast<char *>(create.uniq), sizeof create.uniq - 1);
    ("vm/" + mIdentity.name).copy(reinterpret_cast<char *>(create.phys), sizeof create.phys - 1);
    create.bus = BUS_USB;
    const bool isLit = mIdentity.kind == Kind::lit;
    create.vendor = isLit ? litVendor : mIdentity.vendor;
    create.product = isLit ? litProduct : mIdentity.product;
    create.rd_size = static_cast<std::uint16_t>(descriptor.size());
    std::ranges::copy(descriptor, create.rd_data);
    write(mDevice, event);
}

void UhidKeyboard::send(std::span<const std::uint8_t> bytes)
{
    uhid_event event{};
    event.type = UHID_INPUT2;
    event.u.input2.size = static_cast<std::uint16_t>(bytes.size());
    std::ranges::copy(bytes, event.u.input2.data);
    write(mDevice, event);
}

void UhidKeyboard::sendBroken(std::span<const std::uint8_t> bytes)
{
    send(bytes);
}

void UhidKeyboard::report(std::span<const std::uint8_t> usages)
{
    mDown.assign(usages.begin(), usages.end());
    Bytes bytes;
    if (hasSeveralParts())
        bytes.push_back(keyboardReport);
    const std::size_t modifiers = bytes.size();
    bytes.push_back(0);
    Bytes keys;
    for (const std::uint8_t usage : usages) {
        if (usage >= firstModifier && usage < firstModifier + 8)
            bytes[modifiers] |= static_cast<std::uint8_t>(1 << (usage - firstModifier));
        else
            keys.push_back(usage);
    }
    switch (mIdentity.kind) {
    case Kind::everyKey: {
        std::array<std::uint8_t, 28> bits{};
        for (const std::uint8_t key : keys)
            bits[key / 8] |= static_cast<std::uint8_t>(1 << (key % 8));
        bytes.insert(bytes.end(), bits.begin(), bits.end());
        break;
    }
    case Kind::strange:
        keys.resize(bootKeys, 0);
        for (const std::uint8_t key : keys)
            bytes.insert(bytes.end(), {key, static_cast<std::uint8_t>(key == 0xFF ? 0x7F : 0)});
        break;
    case Kind::noKeys: bytes = {keys.empty() ? std::uint8_t(0) : keys.front()}; break;
    case Kind::plain:
    case Kind::pointing:
    case Kind::lit:
    case Kind::media:
    case Kind::several:
        if (keys.size() > bootKeys)
            keys.assign(bootKeys, rollOver);
        keys.resize(bootKeys, 0);
        bytes.push_back(0);
        bytes.insert(bytes.end(), keys.begin(), keys.end());
        if (mIdentity.kind == Kind::pointing)
            bytes.insert(bytes.end(), {0, 0}); // no motion
        break;
    }
    send(bytes);
}

bool UhidKeyboard::setDown(std::uint8_t usage, bool isDown)
{
    Bytes down = mDown;
    std::erase(down, usage);
    if (isDown)
        down.push_back(usage);
    const auto keys = std::ranges::count_if(down, [](std::uint8_t key) { return key < firstModifier; });
    if (mIdentity.kind != Kind::everyKey && keys > static_cast<std::ptrdiff_t>(bootKeys))
        return false;
    report(down);
    return true;
}

void UhidKeyboard::releaseAll()
{
    report({});
}

void UhidKeyboard::reportMedia(std::uint16_t usage)
{
    send(Bytes{mediaReport, static_cast<std::uint8_t>(usage & 0xFF), static_cast<std::uint8_t>(usage >> 8)});
}

void UhidKeyboard::reportKeypad(std::uint8_t usage)
{
    send(Bytes{keypadReport, usage});
}

int UhidKeyboard::leds()
{
    readOutputs();
    return mLeds;
}

int UhidKeyboard::brightness()
{
    readOutputs();
    return mBrightness;
}

void UhidKeyboard::readOutputs()
{
    uhid_event event{};
    while (::read(mDevice.get(), &event, sizeof event) > 0) {
        if (event.type != UHID_OUTPUT || event.u.output.size == 0)
            continue;
        const std::uint8_t *const bytes = event.u.output.data;
        if (mIdentity.kind == Kind::lit)
            mBrightness = bytes[1]; // after the number of the report, 0
        else
            mLeds = bytes[hasSeveralParts() ? 1 : 0]; // a numbered report begins with its number
    }
}
