// SPDX-License-Identifier: MIT
// One event node of the kernel (/dev/input/event*) as a file: what its owner needs of it, and the real one. Opened on
// any thread, then used by one; allocates nothing after that.
#pragma once

#include "daemon/keyboards/linux/eventbuffer.h"
#include "daemon/keyboards/linux/keytranslator.h"

#include <QString>

#include <bitset>
#include <memory>

struct libevdev;

class EventFile
{
public:
    using Keys = std::bitset<KeyCodes::codeCount>;

    enum class ReadResult {
        event,   ///< one more
        dropped, ///< the kernel had to drop events; those that follow make up for it
        nothing, ///< for now
        gone,    ///< the device is, or the right to use it
    };

    virtual ~EventFile() = default;

    [[nodiscard]] virtual int descriptor() const = 0;
    [[nodiscard]] virtual ReadResult read(KeyTranslator::Event &event) = 0;
    /// Has the kernel give the events to this file alone, or to all again. Returns 0 or an errno value.
    [[nodiscard]] virtual int setGrabbed(bool isGrabbed) = 0;
    /// What the kernel holds for down at this moment. Key events from before that were not read yet are dropped by it.
    [[nodiscard]] virtual Keys keysDown() = 0;
    /// Has the kernel hold a key for down or up, as if the keyboard had said so: whoever receives its events sees it.
    virtual void inject(quint16 code, bool isDown) = 0;
    virtual void setLed(quint16 led, bool isOn) = 0;
};

/// Reads the file by itself, since libevdev asks it anew before each event. Where the kernel had to drop events,
/// libevdev finds out what was missed; it is told of every key, so that it knows what was not.
class EvdevFile : public EventFile
{
public:
    /// Null when it cannot be opened; `error` is errno then.
    [[nodiscard]] static std::unique_ptr<EvdevFile> open(const QString &path, int &error);
    ~EvdevFile() override;

    [[nodiscard]] int descriptor() const override { return mDescriptor; }
    [[nodiscard]] ReadResult read(KeyTranslator::Event &event) override;
    [[nodiscard]] int setGrabbed(bool isGrabbed) override;
    [[nodiscard]] Keys keysDown() override;
    void inject(quint16 code, bool isDown) override;
    void setLed(quint16 led, bool isOn) override;

private:
    /// Who has the next event.
    enum class Source {
        file,
        missedEvents, ///< libevdev
        laterEvents,  ///< libevdev, which has read on meanwhile
    };

    EvdevFile(int descriptor, libevdev *device) : mDescriptor(descriptor), mDevice(device), mBuffer(descriptor) {}

    [[nodiscard]] ReadResult readFile(input_event &event);
    [[nodiscard]] ReadResult readLibrary(input_event &event);
    [[nodiscard]] ReadResult findMissedEvents();

    int mDescriptor;
    libevdev *mDevice;
    EventBuffer mBuffer;
    Source mSource = Source::file;
};
