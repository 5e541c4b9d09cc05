// SPDX-License-Identifier: MIT
// The real keyboards that the user has chosen: finds them when they are plugged in, gives their nodes to the key
// channel, and tells what became of that. One thread, the daemon's.
#pragma once

#include "daemon/keyboards/devices.h"
#include "daemon/keyboards/linux/inputnodes.h"
#include "daemon/keyboards/linux/linuxkeyboard.h"

#include <QFileSystemWatcher>
#include <QSet>

#include <functional>

class LinuxDevices : public DeviceSource
{
    Q_OBJECT

public:
    /// How files are opened, so that tests can have their own.
    struct Outlets
    {
        /// Null: not possible, `error` is errno.
        std::function<std::unique_ptr<EventFile>(const QString &node, int &error)> openNode;
        /// Null: not possible, `problem` says why, with the remedy.
        std::function<std::unique_ptr<OutputDevice>(QString &problem)> makeOutput;
        /// 0, or the errno value that opening the file would bring.
        std::function<int(const QString &path)> access;
    };

    /// Both must live longer.
    LinuxDevices(NodeSource &nodes, LinuxKeyboard &keyboard, QObject *parent = nullptr); ///< the machine's own files
    LinuxDevices(NodeSource &nodes, LinuxKeyboard &keyboard, Outlets outlets, QObject *parent = nullptr);

    [[nodiscard]] QList<InputDevice> devices() const override;
    [[nodiscard]] QList<ChosenDevice> choices() const override { return mChoices; }
    [[nodiscard]] DeviceStatus status() const override;

    /// An id may also be the beginning of only one ("046d:c31c"), or one of its nodes.
    [[nodiscard]] UseResult use(const QStringList &ids) override;
    void useWhenPresent(const QList<ChosenDevice> &choices) override;
    void release() override;

Q_SIGNALS:
    /// The daemon is to use the real keyboards, or the virtual one. Told before the first of them is taken over, and
    /// after the last has been given back; then nothing that is typed is lost between.
    void wanted(bool isWanted);
    void panicked(); ///< the user has held the panic chord; everything was given back

private:
    /// A node of a chosen keyboard that is plugged in.
    struct Node
    {
        int id = 0; // the channel's; never used again
        NodeInfo info;
        QString deviceId;
        QString deviceName;
        InputNode::State state = InputNode::State::waiting;
        int error = 0; // errno: why it is not used
    };

    [[nodiscard]] QList<KeyboardInfo> keyboards() const;
    [[nodiscard]] QList<KeyboardInfo> chosenKeyboards() const; ///< those plugged in
    /// Those plugged in, as waiting and without an id.
    [[nodiscard]] QList<Node> chosenNodes() const;
    [[nodiscard]] QString problemOf(const KeyboardInfo &keyboard) const;
    [[nodiscard]] QString problemOf(const Node &node) const;
    [[nodiscard]] DeviceState stateOf(const DeviceStatus &status, bool isWaiting) const;
    /// Makes the daemon's own keyboard when there is none yet.
    [[nodiscard]] bool hasOutput();
    void synchronize();
    void add(Node node);
    void nodeChanged(int id, InputNode::State state, int error);
    void panic();
    void setWanted(bool isWanted);
    void updateAttachment();

    NodeSource &mSource;
    LinuxKeyboard &mKeyboard;
    Outlets mOutlets;
    QFileSystemWatcher mRightsWatch; // the nodes that could not be opened: a login may bring the right to
    QList<ChosenDevice> mChoices;
    QList<Node> mNodes;
    QSet<QString> mSuspended; // system paths of nodes: left alone until they are plugged in again
    QString mOutputProblem;
    int mLastNodeId = 0;
    bool mIsWanted = false;
};
