// SPDX-License-Identifier: MIT
// An event device of the kernel (/dev/input/event*) as a file: the interface for its owner, and the real one. Opened on
// any thread, then used by one; allocates nothing after opening.
#pragma once

#include "base/result.h"
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
    using Switches = std::bitset<SW_CNT>;

    enum class ReadResult {
        event,   ///< another event
        dropped, ///< the kernel has dropped events; the next ones compensate for it
        nothing, ///< for now
        gone,    ///< the device was removed, or the right to use it revoked
    };

    virtual ~EventFile() = default;

    [[nodiscard]] virtual int descriptor() const = 0;
    /// The volume (ABS_VOLUME) is scaled to the range of the output device.
    [[nodiscard]] virtual ReadResult read(KeyTranslator::Event &event) = 0;
    /// Grabs the device for this file alone, or ungrabs it. Returns 0 or an errno value.
    [[nodiscard]] virtual int setGrabbed(bool isGrabbed) = 0;
    /// The keys that are down in the kernel now. The kernel then drops unread earlier key events.
    [[nodiscard]] virtual Keys keysDown() = 0;
    /// Makes the kernel treat a key as down or up, as if the keyboard had reported it. Every receiver of its events
    /// sees this.
    virtual void inject(quint16 code, bool isDown) = 0;
    /// As keysDown(), for switches; none by default.
    [[nodiscard]] virtual Switches switchesOn() { return {}; }
    virtual void injectSwitch(quint16, bool) {} ///< as inject(): code, whether it is on
    virtual void setLed(quint16 led, bool isOn) = 0;
};

/// Reads the file directly, because libevdev makes a system call before each event. After dropped events, libevdev
/// finds the missed ones. For this, it gets the state before. A missed event has the
/// time of its reading.
class EvdevFile : public EventFile
{
public:
    /// The error is an errno value.
    [[nodiscard]] static Result<std::unique_ptr<EventFile>, int> open(const QString &path);
    ~EvdevFile() override;

    [[nodiscard]] int descriptor() const override { return mDescriptor; }
    [[nodiscard]] ReadResult read(KeyTranslator::Event &event) override;
    [[nodiscard]] int setGrabbed(bool isGrabbed) override;
    [[nodiscard]] Keys keysDown() override;
    void inject(quint16 code, bool isDown) override;
    [[nodiscard]] Switches switchesOn() override;
    void injectSwitch(quint16 code, bool isOn) override;
    void setLed(quint16 led, bool isOn) override;

private:
    /// The source of the next event.
    enum class Source {
        file,
        missedEvents, ///< libevdev
        laterEvents,  ///< libevdev, which has read further meanwhile
    };

    EvdevFile(int descriptor, libevdev *device);

    [[nodiscard]] ReadResult readFile(input_event &event);
    [[nodiscard]] ReadResult readLibrary(input_event &event);
    [[nodiscard]] ReadResult findMissedEvents();
    [[nodiscard]] int outputValue(const input_event &event) const;
    void write(quint16 type, quint16 code, bool isOn) const;
    void noteState(const input_event &event);

    int mDescriptor;
    libevdev *mDevice;
    EventBuffer mBuffer;
    Keys mDown; // according to the events so far
    Source mSource = Source::file;
};
