// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/outputdevice.h"

#include "daemon/keyboards/devices.h"

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <bitset>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

const char *const OutputDevice::name = "Quill Kestra output";

namespace {

constexpr std::size_t batchSize = 64;
constexpr int ledsPerRead = 64;

constexpr quint16 wheels[] = {REL_WHEEL, REL_HWHEEL, REL_DIAL, REL_WHEEL_HI_RES, REL_HWHEEL_HI_RES};

struct CodeRange
{
    quint16 first;
    quint16 last;
};

/// Codes by which udev's input_id recognises a joystick, gamepad, tablet, touchpad or steering wheel.
constexpr CodeRange notOfAKeyboard[] = {
    {BTN_TASK + 9, BTN_GEAR_UP + 14}, // 0x120 to 0x15f: joystick, gamepad, digitizer, wheel
    {BTN_DPAD_UP, BTN_DPAD_RIGHT},
    {BTN_TRIGGER_HAPPY1, BTN_TRIGGER_HAPPY40},
};
static_assert(BTN_TASK + 9 == BTN_JOYSTICK && BTN_GEAR_UP + 15 == KEY_OK);

Error problemOf(int error)
{
    if (error == EACCES || error == EPERM || error == ENOENT || error == ENODEV)
        return {u"The daemon cannot make its own keyboard: %1 (/dev/uinput). %2"_s.arg(
            QString::fromLocal8Bit(strerror(error)), outputRightsRemedy())};
    return {
        u"The daemon cannot make its own keyboard: %1 (/dev/uinput)."_s.arg(QString::fromLocal8Bit(strerror(error)))};
}

libevdev *describe()
{
    libevdev *device = libevdev_new();
    if (!device)
        return nullptr;
    libevdev_set_name(device, OutputDevice::name);
    libevdev_set_id_bustype(device, OutputDevice::bus);
    libevdev_set_id_vendor(device, OutputDevice::vendor);
    libevdev_set_id_product(device, OutputDevice::product);
    for (unsigned int code = KEY_ESC; code < KeyCodes::codeCount; ++code) {
        if (OutputDevice::hasKey(static_cast<quint16>(code)))
            libevdev_enable_event_code(device, EV_KEY, code, nullptr);
    }
    for (const quint16 wheel : wheels)
        libevdev_enable_event_code(device, EV_REL, wheel, nullptr);
    input_absinfo volume = {};
    volume.maximum = OutputDevice::volumeMaximum;
    libevdev_enable_event_code(device, EV_ABS, ABS_VOLUME, &volume);
    for (quint16 code = 0; code < SW_CNT; ++code) {
        if (OutputDevice::hasSwitch(code))
            libevdev_enable_event_code(device, EV_SW, code, nullptr);
    }
    for (unsigned int led = LED_NUML; led <= LED_KANA; ++led)
        libevdev_enable_event_code(device, EV_LED, led, nullptr);
    libevdev_enable_event_type(device, EV_REP);
    return device;
}

} // namespace

struct OutputDevice::Batch
{
    std::array<input_event, batchSize> events{};
    std::size_t count = 0;
    std::bitset<KeyCodes::codeCount> keys; // the keys in it
    std::bitset<SW_CNT> switches;          // the same
    bool hasVolume = false;
};

Result<std::unique_ptr<OutputDevice>> OutputDevice::create()
{
    const int file = ::open("/dev/uinput", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return problemOf(errno);
    libevdev *description = describe();
    libevdev_uinput *device = nullptr;
    const int error = description ? libevdev_uinput_create_from_device(description, file, &device) : -ENOMEM;
    libevdev_free(description);
    if (error < 0) {
        ::close(file);
        return problemOf(-error);
    }
    return std::unique_ptr<OutputDevice>(new OutputDevice(file, device));
}

std::unique_ptr<OutputDevice> OutputDevice::onFile(int descriptor)
{
    return std::unique_ptr<OutputDevice>(new OutputDevice(descriptor, nullptr));
}

OutputDevice::OutputDevice(int descriptor, libevdev_uinput *device)
    : mDescriptor(descriptor), mDevice(device), mBatch(std::make_unique<Batch>())
{
}

OutputDevice::~OutputDevice()
{
    if (mDevice)
        libevdev_uinput_destroy(mDevice); // leaves the file open, because it did not open it
    ::close(mDescriptor);
}

bool OutputDevice::hasKey(quint16 code)
{
    for (const CodeRange &range : notOfAKeyboard) {
        if (code >= range.first && code <= range.last)
            return false;
    }
    return code > KEY_RESERVED && code < KEY_MAX;
}

bool OutputDevice::hasSwitch(quint16 code)
{
    return code <= SW_MAX && code != SW_LID && code != SW_TABLET_MODE;
}

void OutputDevice::press(quint16 code)
{
    if (hasKey(code) && ++mHolders[code] == 1)
        append(EV_KEY, code, 1);
}

void OutputDevice::release(quint16 code)
{
    if (hasKey(code) && mHolders[code] > 0 && --mHolders[code] == 0)
        append(EV_KEY, code, 0);
}

void OutputDevice::releaseAll()
{
    for (quint16 code = 0; code < mHolders.size(); ++code) {
        if (std::exchange(mHolders[code], quint16(0)) > 0)
            append(EV_KEY, code, 0);
    }
}

void OutputDevice::moveWheel(quint16 wheelCode, int value)
{
    append(EV_REL, wheelCode, value);
}

void OutputDevice::setVolume(int value)
{
    append(EV_ABS, ABS_VOLUME, value);
}

void OutputDevice::setSwitch(quint16 switchCode, bool isOn)
{
    if (hasSwitch(switchCode))
        append(EV_SW, switchCode, isOn ? 1 : 0);
}

bool OutputDevice::flush()
{
    if (mBatch->count == 0)
        return true;
    input_event &end = mBatch->events[mBatch->count++];
    end = {};
    end.type = EV_SYN;
    end.code = SYN_REPORT;
    const char *data = reinterpret_cast<const char *>(mBatch->events.data());
    std::size_t left = mBatch->count * sizeof(input_event);
    mBatch->count = 0;
    mBatch->keys.reset();
    mBatch->switches.reset();
    mBatch->hasVolume = false;
    while (left > 0) {
        const ssize_t written = ::write(mDescriptor, data, left);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        data += written;
        left -= static_cast<std::size_t>(written);
    }
    return true;
}

void OutputDevice::append(quint16 type, quint16 code, int value)
{
    if (mTap)
        mTap->addEvent(KeyTap::Side::computer, type, code, value);
    // Programs that look at reports as a whole would miss a key that goes down and up within one report.
    const bool isSecondChange = (type == EV_KEY && mBatch->keys.test(code))
                                || (type == EV_SW && mBatch->switches.test(code))
                                || (type == EV_ABS && mBatch->hasVolume);
    if (isSecondChange || mBatch->count == batchSize - 1)
        flush();
    if (type == EV_KEY)
        mBatch->keys.set(code);
    else if (type == EV_SW)
        mBatch->switches.set(code);
    else if (type == EV_ABS)
        mBatch->hasVolume = true;
    input_event &event = mBatch->events[mBatch->count++];
    event = {};
    event.type = type;
    event.code = code;
    event.value = value;
}

void OutputDevice::readLeds(const std::function<void(quint16 led, bool isOn)> &function)
{
    std::array<input_event, ledsPerRead> events;
    const ssize_t size = ::read(mDescriptor, events.data(), sizeof events);
    for (std::size_t index = 0; size > 0 && index < static_cast<std::size_t>(size) / sizeof(input_event); ++index) {
        const input_event &event = events[index];
        if (event.type == EV_LED && event.code <= LED_MAX)
            function(event.code, event.value != 0);
    }
}
