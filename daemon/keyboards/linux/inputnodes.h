// SPDX-License-Identifier: MIT
// The event nodes of the machine, as udev knows them, and word when they change. One thread, the daemon's.
#pragma once

#include "daemon/keyboards/linux/nodeinfo.h"

#include <QObject>
#include <QTimer>

#include <memory>

struct udev;
struct udev_monitor;
class QSocketNotifier;

/// What LinuxDevices needs of the machine, so that tests can have a machine of their own.
class NodeSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// In no order. The list is made anew with each call.
    [[nodiscard]] virtual QList<NodeInfo> nodes() const = 0;

Q_SIGNALS:
    void changed(); ///< a node came, went, or may now be opened
};

/// Without a running udev daemon the kernel's own words count, and the nodes' names and rights are the kernel's, too.
class InputNodes : public NodeSource
{
    Q_OBJECT

public:
    explicit InputNodes(QObject *parent = nullptr);
    ~InputNodes() override;

    [[nodiscard]] QList<NodeInfo> nodes() const override;

private:
    void readMonitor();

    udev *mUdev;
    udev_monitor *mMonitor = nullptr;
    std::unique_ptr<QSocketNotifier> mNotifier;
    QTimer mSoon; // several words at once are one change
};
