// SPDX-License-Identifier: MIT
// A keyboard with a volume control and a switch: created through /dev/uinput, because a keyboard's own driver, not HID,
// reports switches.
#pragma once

#include <memory>
#include <string>

struct libevdev_uinput;

class ControlPanel
{
public:
    static constexpr int volumeMaximum = 100;

    /// Plugs it in. Throws Failure when the kernel does not accept it.
    explicit ControlPanel(const std::string &name);

    void press(int code, bool isDown); ///< a Linux key code
    void setVolume(int value);         ///< 0 to volumeMaximum
    void setSwitch(bool isOn);         ///< SW_MUTE_DEVICE

private:
    struct Destroyer
    {
        void operator()(libevdev_uinput *device) const;
    };

    void send(unsigned int type, unsigned int code, int value);

    std::unique_ptr<libevdev_uinput, Destroyer> mDevice;
};
