// SPDX-License-Identifier: MIT
// One event node of a keyboard from the moment it is chosen: waits until no key of it is down, takes it for the daemon
// alone, reads it. Owned by the key channel; its thread, the key thread.
#pragma once

#include "daemon/keyboards/linux/eventfile.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>

class InputNode;

/// What its owner does about it. The owner may destroy no node from within a call; it may release() them.
class InputNodeHandler
{
public:
    virtual ~InputNodeHandler() = default;

    virtual void nodeEvent(InputNode &node, const KeyTranslator::Event &event) = 0;
    virtual void nodeRead(InputNode &node) = 0; ///< everything that came at once was told
    virtual void nodeDroppedEvents(InputNode &node) = 0;
    virtual void nodeStateChanged(InputNode &node) = 0;
};

/// The desktop has seen the presses of the keys that are down at the beginning; once the node is grabbed it would never
/// see their releases, and repeat them for ever. So the node waits for them to come up. After a while it takes over
/// what is still down: the desktop sees it come up, and the daemon sees it go down, and come up when it does.
class InputNode : public QObject
{
    Q_OBJECT

public:
    enum class State {
        waiting, ///< for its keys to come up; the desktop still has them
        grabbed,
        refused, ///< another program has grabbed it, see error()
        gone,    ///< unplugged
        released ///< given back
    };

    /// How much is read before others have their turn, and how long a node rests that has more: one that floods.
    static constexpr int eventsAtOnce = 64;
    static constexpr std::chrono::milliseconds rest{1};
    static constexpr std::chrono::milliseconds usualPatience{3000};

    /// `id`: names the node to its owner. `givesHidUsages`: see KeyTranslator::addNode().
    InputNode(std::unique_ptr<EventFile> file, int id, bool givesHidUsages, InputNodeHandler &handler,
              std::chrono::milliseconds patience = usualPatience, QObject *parent = nullptr);
    ~InputNode() override;

    [[nodiscard]] State state() const { return mState; }
    [[nodiscard]] int id() const { return mId; }
    [[nodiscard]] bool givesHidUsages() const { return mGivesHidUsages; }
    [[nodiscard]] int error() const { return mError; } ///< errno of what made it refused; else 0

    void start();
    /// Gives the node back. What is down on it comes up for the kernel first: the desktop has not seen it go down.
    void release();
    void setLed(quint16 led, bool isOn);

    int translatorPlace = -1; ///< the owner's; -1: none

private:
    void setState(State state);
    void read();
    [[nodiscard]] bool readOnce(); ///< false: nothing more
    void grabWhenUp();
    void takeOver();
    void refuse(int error);

    std::unique_ptr<EventFile> mFile;
    int mId;
    InputNodeHandler &mHandler;
    QSocketNotifier mNotifier;
    QTimer mRest;
    QTimer mPatience;
    State mState = State::waiting;
    int mError = 0;
    bool mGivesHidUsages;
};
