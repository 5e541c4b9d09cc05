// SPDX-License-Identifier: MIT
// One event device of a chosen keyboard: waits until none of its keys is down, grabs it and reads it. Owned by the key
// channel; key thread only.
#pragma once

#include "daemon/keyboards/linux/eventfile.h"
#include "daemon/keyboards/linux/readnotifier.h"

#include <QObject>
#include <QTimer>

#include <chrono>

class EventDevice;

/// Implemented by the owner. From within a call it may ungrab() nodes but must not destroy them.
class EventDeviceHandler
{
public:
    virtual ~EventDeviceHandler() = default;

    virtual void nodeEvent(EventDevice &node, const KeyTranslator::Event &event) = 0;
    virtual void nodeRead(EventDevice &node) = 0; ///< all events of one read have been passed on
    virtual void nodeDroppedEvents(EventDevice &node) = 0;
    virtual void nodeStateChanged(EventDevice &node) = 0;
};

/// The desktop has seen the presses of the keys that are down at the beginning. Once the device is grabbed, it would
/// never see their releases, and would repeat them for ever. The node therefore waits until they come up. After a while
/// it grabs the device anyway. The desktop then sees the held keys come up; the daemon sees them go down, and later
/// come up. A switch that is on does not delay the grab: it goes off for the desktop and on for the daemon, and the
/// reverse at the end.
class EventDevice : public QObject, private ReadHandler
{
    Q_OBJECT

public:
    enum class State {
        waiting, ///< for its keys to come up; the desktop still receives them
        grabbed,
        refused, ///< another program has grabbed it, see error()
        gone,    ///< unplugged
        ungrabbed
    };

    /// Against floods: the most events of one turn, and the pause of a node that has more.
    static constexpr int eventsAtOnce = 64;
    static constexpr std::chrono::milliseconds rest{1};
    static constexpr std::chrono::milliseconds usualPatience{3000};

    /// `id`: identifies the node to its owner. `givesHidUsages`: see KeyTranslator::addNode().
    EventDevice(std::unique_ptr<EventFile> file, int id, bool givesHidUsages, EventDeviceHandler &handler,
                std::chrono::milliseconds patience = usualPatience, QObject *parent = nullptr);
    ~EventDevice() override;

    [[nodiscard]] State state() const { return mState; }
    [[nodiscard]] int id() const { return mId; }
    [[nodiscard]] bool givesHidUsages() const { return mGivesHidUsages; }
    [[nodiscard]] int error() const { return mError; } ///< errno of the refusal; otherwise 0

    void start();
    /// Ungrabs the device. First makes the kernel see its keys come up, because the desktop has not seen them go down.
    void ungrab();
    void setLed(quint16 led, bool isOn);

    int translatorPlace = -1; ///< for the owner; -1: none

private:
    void setState(State state);
    [[nodiscard]] int setGrabbed(bool isGrabbed);
    void fileReady() override { read(); }
    void read();
    [[nodiscard]] bool readOnce(); ///< false: nothing more
    void grabIfAllUp();
    void grabWithKeysDown();
    void refuse(int error);

    std::unique_ptr<EventFile> mFile;
    int mId;
    EventDeviceHandler &mHandler;
    ReadNotifier mNotifier;
    QTimer mRest;
    QTimer mPatience;
    State mState = State::waiting;
    int mError = 0;
    bool mGivesHidUsages;
};
