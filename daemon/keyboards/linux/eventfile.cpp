// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventfile.h"

#include "daemon/keyboards/linux/outputdevice.h"
#include "daemon/system/deadlinetimer.h"

#include <libevdev/libevdev.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

void setTime(input_event &event, KeyTranslator::Time time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    event.input_event_sec = static_cast<decltype(event.input_event_sec)>(seconds.count());
    event.input_event_usec = static_cast<decltype(event.input_event_usec)>((time - seconds).count());
}

} // namespace

Result<std::unique_ptr<EventFile>, int> EvdevFile::open(const QString &path)
{
    const int descriptor = ::open(path.toLocal8Bit().constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    libevdev *device = nullptr;
    if (const int error = -libevdev_new_from_fd(descriptor, &device); error > 0) {
        ::close(descriptor);
        return error;
    }
    // The engine's clock. Others could be set back during the recording of a macro.
    libevdev_set_clock_id(device, CLOCK_MONOTONIC);
    return std::unique_ptr<EventFile>(new EvdevFile(descriptor, device));
}

EvdevFile::EvdevFile(int descriptor, libevdev *device) : mDescriptor(descriptor), mDevice(device), mBuffer(descriptor)
{
    for (std::size_t code = 0; code < mDown.size(); ++code)
        mDown[code] = libevdev_get_event_value(device, EV_KEY, static_cast<unsigned int>(code)) != 0;
}

EvdevFile::~EvdevFile()
{
    libevdev_free(mDevice);
    ::close(mDescriptor);
}

EventFile::ReadResult EvdevFile::read(KeyTranslator::Event &event)
{
    input_event read;
    ReadResult result = ReadResult::nothing;
    if (mSource != Source::file)
        result = readLibrary(read);
    if (mSource == Source::file)
        result = readFile(read);
    if (result == ReadResult::event)
        event = {.type = read.type,
                 .code = read.code,
                 .value = outputValue(read),
                 .time = std::chrono::seconds(read.input_event_sec) + std::chrono::microseconds(read.input_event_usec)};
    return result;
}

EventFile::ReadResult EvdevFile::readFile(input_event &event)
{
    switch (mBuffer.next(event)) {
    case EventBuffer::Result::event: break;
    case EventBuffer::Result::nothing: return ReadResult::nothing;
    case EventBuffer::Result::gone: return ReadResult::gone;
    }
    if (event.type == EV_SYN && event.code == SYN_DROPPED)
        return findMissedEvents();
    noteState(event);
    return ReadResult::event;
}

void EvdevFile::noteState(const input_event &event)
{
    if (event.type == EV_KEY && event.code < mDown.size())
        mDown[event.code] = event.value != 0;
    else if (event.type == EV_SW || event.type == EV_ABS)
        libevdev_set_event_value(mDevice, event.type, event.code, event.value);
}

int EvdevFile::outputValue(const input_event &event) const
{
    if (event.type != EV_ABS || event.code != ABS_VOLUME)
        return event.value;
    const input_absinfo *range = libevdev_get_abs_info(mDevice, ABS_VOLUME);
    if (!range || range->maximum <= range->minimum)
        return event.value;
    const qint64 width = qint64(range->maximum) - range->minimum;
    const qint64 place = std::clamp<qint64>(qint64(event.value) - range->minimum, 0, width);
    return static_cast<int>(place * OutputDevice::volumeMaximum / width);
}

EventFile::ReadResult EvdevFile::findMissedEvents()
{
    mBuffer.clear();                                        // these events are among the missed ones
    for (std::size_t code = 0; code < mDown.size(); ++code) // not at every key: it would be half the cost of reading it
        libevdev_set_event_value(mDevice, EV_KEY, static_cast<unsigned int>(code), mDown[code]);
    input_event unused;
    if (libevdev_next_event(mDevice, LIBEVDEV_READ_FLAG_FORCE_SYNC, &unused) != LIBEVDEV_READ_STATUS_SYNC)
        return ReadResult::gone;
    mSource = Source::missedEvents;
    return ReadResult::dropped;
}

/// Returns to the source `file` when libevdev has no more events.
EventFile::ReadResult EvdevFile::readLibrary(input_event &event)
{
    for (;;) {
        const bool isMissed = mSource == Source::missedEvents;
        const int result =
            libevdev_next_event(mDevice, isMissed ? LIBEVDEV_READ_FLAG_SYNC : LIBEVDEV_READ_FLAG_NORMAL, &event);
        if (result == LIBEVDEV_READ_STATUS_SYNC && !isMissed) {
            mSource = Source::missedEvents;
            return ReadResult::dropped;
        }
        if (result >= 0) {
            if (isMissed)
                setTime(event, DeadlineTimer::now()); // libevdev does not know their times
            noteState(event);
            return ReadResult::event;
        }
        if (result == -EINTR)
            continue;
        if (result != -EAGAIN)
            return ReadResult::gone;
        mSource = isMissed ? Source::laterEvents : Source::file;
        if (!isMissed)
            return ReadResult::nothing;
    }
}

int EvdevFile::setGrabbed(bool isGrabbed)
{
    return ::ioctl(mDescriptor, EVIOCGRAB, isGrabbed ? 1L : 0L) == 0 ? 0 : errno;
}

EventFile::Keys EvdevFile::keysDown()
{
    std::array<unsigned char, KeyCodes::codeCount / 8> bytes = {};
    Keys keys;
    if (::ioctl(mDescriptor, EVIOCGKEY(bytes.size()), bytes.data()) < 0)
        return keys;
    for (std::size_t code = 0; code < keys.size(); ++code)
        keys[code] = (bytes[code / 8] >> (code % 8)) & 1;
    return keys;
}

void EvdevFile::inject(quint16 code, bool isDown)
{
    write(EV_KEY, code, isDown);
}

EventFile::Switches EvdevFile::switchesOn()
{
    std::array<unsigned char, (SW_CNT + 7) / 8> bytes = {};
    Switches switches;
    if (::ioctl(mDescriptor, EVIOCGSW(bytes.size()), bytes.data()) < 0)
        return switches;
    for (std::size_t code = 0; code < switches.size(); ++code)
        switches[code] = (bytes[code / 8] >> (code % 8)) & 1;
    return switches;
}

void EvdevFile::injectSwitch(quint16 code, bool isOn)
{
    write(EV_SW, code, isOn);
}

void EvdevFile::setLed(quint16 led, bool isOn)
{
    if (!libevdev_has_event_code(mDevice, EV_LED, led))
        return;
    write(EV_LED, led, isOn);
}

void EvdevFile::write(quint16 type, quint16 code, bool isOn) const
{
    std::array<input_event, 2> events = {};
    events[0].type = type;
    events[0].code = code;
    events[0].value = isOn ? 1 : 0;
    events[1].type = EV_SYN;
    events[1].code = SYN_REPORT;
    // On failure the device was removed, which the next read() reports.
    [[maybe_unused]] const ssize_t written = ::write(mDescriptor, events.data(), sizeof events);
}
