// SPDX-License-Identifier: MIT
// The output device, made with uinput: the desktop sees it instead of the grabbed keyboards. Made on any thread, then
// used by one (the key thread); allocates nothing after create().
#pragma once

#include "base/keycodes.h"
#include "base/result.h"
#include "daemon/keyboards/keytap.h"

#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <span>

struct input_event;
struct libevdev_uinput;

/// A keyboard with every key, mouse buttons, wheels, a volume control, switches, repetition by the kernel, and LEDs. It
/// omits the buttons by which a desktop would take it for a joystick or a tablet, and the switches by which a desktop
/// would take the computer for a laptop or a tablet. With this object or the process it disappears, and its keys come
/// up.
class OutputDevice
{
public:
    static constexpr quint16 bus = 0x06;      // BUS_VIRTUAL
    static constexpr quint16 vendor = 0x514B; // not a USB vendor's number, which the bus indicates
    static constexpr quint16 product = 0x0001;
    static const char *const name;
    static constexpr int volumeMaximum = 65535; // from 0, whatever the range of the keyboard

    /// Fails if the system does not allow it. The error is a whole sentence, with the remedy.
    [[nodiscard]] static Result<std::unique_ptr<OutputDevice>> create();
    /// Writes its events to this file, which it owns, for callers that read them.
    [[nodiscard]] static std::unique_ptr<OutputDevice> onFile(int descriptor);
    ~OutputDevice();
    OutputDevice(const OutputDevice &) = delete;
    OutputDevice &operator=(const OutputDevice &) = delete;

    [[nodiscard]] int descriptor() const { return mDescriptor; } ///< readable when the desktop has switched an LED
    [[nodiscard]] static bool hasKey(quint16 code);
    [[nodiscard]] static bool hasSwitch(quint16 code);

    /// A code held several times goes down with the first press() and comes up with the last release(). release()
    /// ignores a code that is not held. The desktop sees changes with the next flush().
    void press(quint16 code);
    void release(quint16 code);
    void releaseAll(); ///< releases every code, however often it is held
    void moveWheel(quint16 wheelCode, int value);
    void setVolume(int value); ///< 0 to volumeMaximum
    void setSwitch(quint16 switchCode, bool isOn);
    /// `tap` gets every event from now on; it must outlive this.
    void setTap(KeyTap &tap) { mTap = &tap; }
    /// Ends the report. False if the system refused it; its contents are then lost.
    bool flush();

    /// Calls `function(ledCode, isOn)` for each LED that the desktop has switched.
    void readLeds(const std::function<void(quint16 led, bool isOn)> &function);

private:
    OutputDevice(int descriptor, libevdev_uinput *device);
    void append(quint16 type, quint16 code, int value);

    struct Batch;
    int mDescriptor;
    libevdev_uinput *mDevice; // null for onFile()
    std::unique_ptr<Batch> mBatch;
    KeyTap *mTap = nullptr; // may be null
    std::array<quint16, KeyCodes::codeCount> mHolders{};
};
