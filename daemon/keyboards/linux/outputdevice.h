// SPDX-License-Identifier: MIT
// The daemon's own keyboard, made with uinput: what the desktop sees in place of the keyboards that the daemon has
// taken over. Made on any thread, then used by one (the key thread); nothing allocates after create().
#pragma once

#include "daemon/keyboards/linux/keycodes.h"

#include <QString>

#include <array>
#include <functional>
#include <memory>
#include <span>

struct input_event;
struct libevdev_uinput;

/// A keyboard with every key that there is, mouse buttons, wheels, repetition by the kernel, and LEDs; but without the
/// buttons by which a desktop would take it for a joystick or a tablet. It is gone, and what is down on it comes up,
/// with this object or the process.
class OutputDevice
{
public:
    static constexpr quint16 bus = 0x06;      // BUS_VIRTUAL
    static constexpr quint16 vendor = 0x514B; // no USB vendor's: the bus says that it is none
    static constexpr quint16 product = 0x0001;
    static const char *const name;

    /// Null when the system does not let it; `problem` then says why, with the remedy.
    [[nodiscard]] static std::unique_ptr<OutputDevice> create(QString &problem);
    /// One that writes its events to this file, and owns it, for who wants to read them himself.
    [[nodiscard]] static std::unique_ptr<OutputDevice> onFile(int descriptor);
    ~OutputDevice();
    OutputDevice(const OutputDevice &) = delete;
    OutputDevice &operator=(const OutputDevice &) = delete;

    [[nodiscard]] int descriptor() const { return mDescriptor; } ///< readable when the desktop has switched an LED
    [[nodiscard]] static bool hasKey(quint16 code);

    /// A code that several hold goes down with the first and comes up with the last; one that nobody holds does not
    /// come up. The desktop sees it with the next flush().
    void hold(quint16 code);
    void letGo(quint16 code);
    void letGoOfAll(); ///< whoever holds it
    void turn(quint16 wheelCode, int value);
    /// Ends the report. False when the system did not take it; what was in it is lost.
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
    std::array<quint16, KeyCodes::codeCount> mHolders{};
};
