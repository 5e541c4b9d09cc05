// SPDX-License-Identifier: MIT
// The real keyboards that the user has chosen: finds them when they are attached, passes their event devices to the key
// channel and reports the result. Main thread only.
#pragma once

#include "daemon/keyboards/devices.h"
#include "daemon/keyboards/linux/linuxkeyboard.h"
#include "daemon/keyboards/linux/seatwatch.h"
#include "daemon/keyboards/linux/udeveventdevices.h"

#include <QHash>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <functional>

class LinuxDevices : public DeviceSource
{
    Q_OBJECT

public:
    /// Functions that ask the system; tests replace them.
    struct Services
    {
        /// The error is an errno value.
        std::function<Result<std::unique_ptr<EventFile>, int>(const QString &node)> openNode;
        /// The error is a whole sentence, with the remedy.
        std::function<Result<std::unique_ptr<OutputDevice>>()> makeOutput;
        /// 0, or the errno value with which opening the file would fail.
        std::function<int(const QString &path)> access;
        /// Whether this user is at the seat; lookAgain() must be called when the answer changes.
        std::function<SeatWatch::Presence(const QString &seat)> presence;
        /// How long a keyboard must be the only one of its make before it can be a chosen one at another port. The
        /// keyboards of one hub appear one after the other, the chosen one perhaps last.
        std::chrono::milliseconds settlingTime = std::chrono::seconds(5);
        /// Before the second attempt to grab a keyboard that another program has. Each later pause is twice as long, up
        /// to longestRetryPause.
        std::chrono::milliseconds firstRetryPause = std::chrono::milliseconds(500);
    };

    static constexpr std::chrono::seconds longestRetryPause{30};

    /// All must outlive this. Opens the machine's own files.
    LinuxDevices(EventDeviceSource &nodes, LinuxKeyboard &keyboard, SeatWatch &seats, QObject *parent = nullptr);
    LinuxDevices(EventDeviceSource &nodes, LinuxKeyboard &keyboard, Services services, QObject *parent = nullptr);

    [[nodiscard]] QList<InputDevice> devices() const override;
    [[nodiscard]] QList<ChosenDevice> choices() const override;
    [[nodiscard]] DeviceStatus status() const override;

    /// An id may also be an unambiguous beginning of one ("046d:c31c"), or one of the keyboard's nodes.
    [[nodiscard]] Result<void, UseError> use(const QStringList &ids) override;
    [[nodiscard]] Result<void, UseError> useAlso(const QStringList &ids) override;
    void useWhenPresent(const QList<ChosenDevice> &choices) override;
    void release() override;
    [[nodiscard]] Result<void, UseError> releaseThese(const QStringList &ids) override;

    /// Whether a chosen keyboard seems to be at another port, which is decided after the settling time.
    [[nodiscard]] bool isSettling() const { return mMove.isActive(); }
    /// The pause before the next attempt to grab a chosen keyboard that another program has; 0 if there is none. The
    /// kernel does not report when that program releases it.
    [[nodiscard]] std::chrono::milliseconds retryPause() const
    {
        return mRetry.isActive() ? mRetry.intervalAsDuration() : std::chrono::milliseconds(0);
    }
    /// Grabs and releases what may now be grabbed, or no longer.
    void lookAgain();

Q_SIGNALS:
    /// The daemon must now use the real keyboards, or the virtual one. Emitted before the first keyboard is grabbed and
    /// after the last one is ungrabbed, so nothing that the user types in between is lost.
    void wanted(bool isWanted);
    void choiceMoved();         ///< a chosen keyboard is now at another port: choices() must be stored
    void releaseChordPressed(); ///< the user has held the release chord; every keyboard was ungrabbed

private:
    /// As in InputDevice.
    struct Problem
    {
        DeviceObstacle obstacle = DeviceObstacle::none;
        QString text = {};
    };

    /// A keyboard without a serial number at another port than the chosen one, which was not attached since it was
    /// chosen or loaded. It may be the chosen one, or another of its make. It is used until a keyboard is at the chosen
    /// port.
    struct StandIn
    {
        ChosenDevice chosen;
        ChosenDevice used;
    };

    /// A node of an attached keyboard that is chosen.
    struct Node
    {
        int id = 0; // the channel's; never reused
        EventDeviceInfo info;
        QString deviceId;
        QString deviceName;
        QString seat;
        EventDevice::State state = EventDevice::State::waiting;
        int error = 0; // errno: why it is not used
    };

    [[nodiscard]] QList<KeyboardInfo> keyboards() const;
    [[nodiscard]] QList<KeyboardInfo> chosenKeyboards() const; ///< attached ones only
    /// Whether chosen keyboards are attached, but none at a seat with a session of this user.
    [[nodiscard]] bool isAway() const;
    /// The nodes of attached ones, in the state waiting and without an id.
    [[nodiscard]] QList<Node> chosenNodes() const;
    /// Those of them that the daemon may have now.
    [[nodiscard]] QList<Node> nodesToGrab() const;
    [[nodiscard]] Problem problemOf(const KeyboardInfo &keyboard) const;
    [[nodiscard]] QString problemOf(const Node &node) const;
    /// Of an attempt to use the chosen keyboard with this id, for example because another program has grabbed it.
    [[nodiscard]] Problem problemOfUse(const QString &deviceId) const;
    [[nodiscard]] DeviceState stateOf(const DeviceStatus &status, bool isWaiting) const;
    [[nodiscard]] DeviceState stateOfChosen(const KeyboardInfo &keyboard) const;
    /// The keyboards that `ids` mean, each once, if all of them can be used.
    [[nodiscard]] Result<QList<KeyboardInfo>, UseError> usableKeyboards(const QStringList &ids);
    /// Those of the choices that are not attached.
    [[nodiscard]] QList<ChosenDevice> absentChoices(const QList<KeyboardInfo> &present) const;
    /// Makes the output device if there is none yet.
    [[nodiscard]] bool hasOutput();
    void choose(const QList<ChosenDevice> &choices);
    void watchForMoves();
    /// Uses the chosen keyboards again that have returned.
    void endStandIns(const QList<InputDevice> &present);
    void followMovedKeyboards();
    /// Whether a chosen keyboard or the output device cannot be opened.
    [[nodiscard]] bool areRightsMissing() const;
    void synchronize();
    /// Ensures that another attempt follows while a node is grabbed by another program.
    void watchForTaken();
    void add(Node node);
    void nodeChanged(int id, EventDevice::State state, int error);
    /// Logs the node's problem, unless it is the one that the log already has. False if it is.
    bool logProblem(const Node &node);
    void ungrabEveryKeyboard();
    void setWanted(bool isWanted);
    void updateAttachment();

    EventDeviceSource &mSource;
    LinuxKeyboard &mKeyboard;
    Services mServices;
    QList<ChosenDevice> mChoices; // with the ports of stand-ins
    QList<StandIn> mStandIns;     // for some of mChoices
    QList<ChosenDevice> mSeen;    // those of mChoices that were attached since they were chosen or loaded
    QList<ChosenDevice> mOthers;  // keyboards that were seen beside the chosen one of their make
    QTimer mMove;                 // see isSettling()
    QTimer mRetry;                // see retryPause()
    std::chrono::milliseconds mNextRetryPause;
    QList<Node> mNodes;
    QSet<QString> mSuspended;                // system paths of nodes; ignored until they are plugged in again
    QHash<QString, QString> mLoggedProblems; // by the system paths of nodes
    QString mOutputProblem;
    int mLastNodeId = 0;
    bool mIsWanted = false;
};
