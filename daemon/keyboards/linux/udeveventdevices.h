// SPDX-License-Identifier: MIT
// The machine's event devices, as udev knows them, and a signal for their changes. Main thread only.
#pragma once

#include "daemon/keyboards/linux/eventdeviceinfo.h"
#include "daemon/keyboards/linux/rightswatch.h"

#include <QObject>
#include <QTimer>

#include <memory>

struct udev;
struct udev_monitor;
class QSocketNotifier;

/// The interface of LinuxDevices to the machine; tests implement their own.
class EventDeviceSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// In no particular order. Each call makes a new list.
    [[nodiscard]] virtual QList<EventDeviceInfo> nodes() const = 0;
    /// Whether changed() must also report rights that may have been granted. False at first: each event of a keyboard
    /// costs more while the folder of its event device is watched.
    virtual void watchRights(bool isWanted) = 0;

Q_SIGNALS:
    void changed(); ///< a node or the output device appeared, disappeared, or may now be opened
};

/// Without a running udev daemon it listens to the kernel, and nodes have the kernel's names and permissions.
class UdevEventDevices : public EventDeviceSource
{
    Q_OBJECT

public:
    explicit UdevEventDevices(QObject *parent = nullptr);
    ~UdevEventDevices() override;

    [[nodiscard]] QList<EventDeviceInfo> nodes() const override;
    void watchRights(bool isWanted) override;

private:
    void readMonitor();
    void signalSoon();

    udev *mUdev;
    udev_monitor *mMonitor = nullptr;
    std::unique_ptr<QSocketNotifier> mNotifier;
    std::unique_ptr<RightsWatch> mRights;
    QTimer mSoon; // merges changes that arrive together
};
