// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/eventdevice.h"

namespace {

constexpr int grabAttempts = 3;

template <typename Function> void forEachKey(const EventFile::Keys &keys, Function function)
{
    for (std::size_t code = 0; code < keys.size(); ++code) {
        if (keys[code])
            function(static_cast<quint16>(code));
    }
}

} // namespace

EventDevice::EventDevice(std::unique_ptr<EventFile> file, int id, bool givesHidUsages, EventDeviceHandler &handler,
                         std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent), mFile(std::move(file)), mId(id), mHandler(handler), mNotifier(mFile->descriptor(), *this, this),
      mRest(this), mPatience(this), mGivesHidUsages(givesHidUsages)
{
    mRest.setSingleShot(true);
    mRest.setTimerType(Qt::PreciseTimer);
    mRest.setInterval(rest);
    mRest.callOnTimeout(this, [this] {
        mNotifier.setEnabled(true);
        read(); // the file does not signal events that were already read but not yet passed on
    });
    mPatience.setSingleShot(true);
    mPatience.setInterval(patience);
    mPatience.callOnTimeout(this, &EventDevice::grabWithKeysDown);
}

EventDevice::~EventDevice()
{
    ungrab();
}

void EventDevice::start()
{
    mNotifier.setEnabled(true);
    mPatience.start();
    grabIfAllUp();
}

void EventDevice::ungrab()
{
    if (mState == State::grabbed) {
        forEachKey(mFile->keysDown(), [this](quint16 code) { mFile->inject(code, false); });
        [[maybe_unused]] const int error = setGrabbed(false); // fails when the device was removed
    }
    if (mState == State::grabbed || mState == State::waiting)
        setState(State::ungrabbed);
}

void EventDevice::setLed(quint16 led, bool isOn)
{
    if (mState == State::grabbed)
        mFile->setLed(led, isOn);
}

void EventDevice::setState(State state)
{
    mState = state;
    if (state != State::waiting)
        mPatience.stop();
    if (state != State::waiting && state != State::grabbed) {
        mNotifier.setEnabled(false);
        mRest.stop();
    }
    mHandler.nodeStateChanged(*this);
}

int EventDevice::setGrabbed(bool isGrabbed)
{
    // Before the receiver of the events changes, the old one sees switches go off; after it, the new one sees them go
    // on.
    const EventFile::Switches on = mFile->switchesOn();
    const auto setAll = [&](bool isOn) {
        for (std::size_t code = 0; code < on.size(); ++code) {
            if (on[code])
                mFile->injectSwitch(static_cast<quint16>(code), isOn);
        }
    };
    setAll(false);
    const int error = mFile->setGrabbed(isGrabbed);
    setAll(true);
    return error;
}

void EventDevice::read()
{
    int count = 0;
    while (count < eventsAtOnce && readOnce())
        ++count;
    if (mState == State::grabbed || mState == State::waiting) {
        if (count == eventsAtOnce) {
            mNotifier.setEnabled(false);
            mRest.start();
        } else if (mState == State::waiting && count > 0) {
            grabIfAllUp();
        }
    }
    mHandler.nodeRead(*this);
}

bool EventDevice::readOnce()
{
    KeyTranslator::Event event;
    switch (mFile->read(event)) {
    case EventFile::ReadResult::event:
        if (mState == State::grabbed)
            mHandler.nodeEvent(*this, event);
        break;
    case EventFile::ReadResult::dropped: mHandler.nodeDroppedEvents(*this); break;
    case EventFile::ReadResult::nothing: return false;
    case EventFile::ReadResult::gone: setState(State::gone); return false;
    }
    return mState == State::grabbed || mState == State::waiting;
}

void EventDevice::grabIfAllUp()
{
    if (mFile->keysDown().any())
        return;
    if (const int error = setGrabbed(true))
        return refuse(error);
    const EventFile::Keys pressed = mFile->keysDown();
    if (pressed.none())
        return setState(State::grabbed);
    // A key went down just before. The desktop has seen that, and must see its release.
    if (const int error = setGrabbed(false))
        return refuse(error);
    const EventFile::Keys missed = pressed & ~mFile->keysDown(); // came up meanwhile, without a receiver
    forEachKey(missed, [this](quint16 code) {
        mFile->inject(code, true);
        mFile->inject(code, false);
    });
}

void EventDevice::grabWithKeysDown()
{
    EventFile::Keys held;
    for (int attempt = 0; attempt < grabAttempts; ++attempt) {
        const EventFile::Keys down = mFile->keysDown();
        forEachKey(down, [this](quint16 code) { mFile->inject(code, false); });
        held |= down;
        if (const int error = setGrabbed(true))
            return refuse(error);
        const bool isLast = attempt == grabAttempts - 1;
        if (mFile->keysDown().none() || isLast)
            break;
        // Another key went down in between.
        if (const int error = setGrabbed(false))
            return refuse(error);
    }
    setState(State::grabbed);
    if (mState == State::grabbed) // the handler may have ungrabbed it
        forEachKey(held, [this](quint16 code) { mFile->inject(code, true); });
}

void EventDevice::refuse(int error)
{
    mError = error;
    setState(error == ENODEV ? State::gone : State::refused);
}
