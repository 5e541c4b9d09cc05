// SPDX-License-Identifier: MIT
#include "tests/vm/driver/controlpanel.h"

#include "tests/vm/driver/failure.h"

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <cstring>

ControlPanel::ControlPanel(const std::string &name)
{
    const std::unique_ptr<libevdev, decltype(&libevdev_free)> description(libevdev_new(), libevdev_free);
    libevdev_set_name(description.get(), name.c_str());
    libevdev_set_id_bustype(description.get(), BUS_USB);
    libevdev_set_id_vendor(description.get(), 0x1209); // for tests
    libevdev_set_id_product(description.get(), 9);
    for (unsigned int code = KEY_ESC; code <= KEY_F24; ++code)
        libevdev_enable_event_code(description.get(), EV_KEY, code, nullptr);
    input_absinfo volume{};
    volume.maximum = volumeMaximum;
    libevdev_enable_event_code(description.get(), EV_ABS, ABS_VOLUME, &volume);
    libevdev_enable_event_code(description.get(), EV_SW, SW_MUTE_DEVICE, nullptr);
    libevdev_uinput *device = nullptr;
    const int error = libevdev_uinput_create_from_device(description.get(), LIBEVDEV_UINPUT_OPEN_MANAGED, &device);
    if (error < 0)
        throw Failure(std::string("/dev/uinput: ") + std::strerror(-error));
    mDevice.reset(device);
}

void ControlPanel::Destroyer::operator()(libevdev_uinput *device) const
{
    libevdev_uinput_destroy(device);
}

void ControlPanel::press(int code, bool isDown)
{
    send(EV_KEY, static_cast<unsigned int>(code), isDown);
}

void ControlPanel::setVolume(int value)
{
    send(EV_ABS, ABS_VOLUME, value);
}

void ControlPanel::setSwitch(bool isOn)
{
    send(EV_SW, SW_MUTE_DEVICE, isOn);
}

void ControlPanel::send(unsigned int type, unsigned int code, int value)
{
    libevdev_uinput_write_event(mDevice.get(), type, code, value);
    libevdev_uinput_write_event(mDevice.get(), EV_SYN, SYN_REPORT, 0);
}
