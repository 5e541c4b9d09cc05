// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/udeveventdevices.h"

#include "daemon/system/logging.h"

#include <QFile>
#include <QSocketNotifier>

#include <libudev.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int wordsAtOnce = 64;

QString attribute(udev_device *device, const char *name)
{
    return device ? QString::fromUtf8(udev_device_get_sysattr_value(device, name)) : QString();
}

quint16 hexAttribute(udev_device *device, const char *name)
{
    return attribute(device, name).toUShort(nullptr, 16);
}

EventDeviceInfo::Codes codes(udev_device *input, const char *name)
{
    return EventDeviceInfo::codesFromText(attribute(input, name).toLatin1());
}

/// Removes the part of "usb-0000:00:14.0-3/input1" that distinguishes the interfaces of one device.
QString portOf(const QString &physical)
{
    return physical.left(physical.lastIndexOf("/input"_L1));
}

/// The device's own name, without the word that the kernel appends for each of its nodes.
QString nameOf(udev_device *input, udev_device *hid)
{
    const QString nodeName = attribute(input, "name");
    const QString name = hid ? QString::fromUtf8(udev_device_get_property_value(hid, "HID_NAME")) : QString();
    return name.trimmed().isEmpty() ? nodeName : name;
}

/// Where udev names no seat, the login manager takes the first one.
QString seatOf(udev_device *device)
{
    const char *seat = udev_device_get_property_value(device, "ID_SEAT");
    return seat && *seat ? QString::fromUtf8(seat) : QString(EventDeviceInfo::defaultSeat);
}

std::optional<EventDeviceInfo> nodeInfo(udev_device *device)
{
    const char *node = udev_device_get_devnode(device);
    // Parents belong to the device and must not be freed.
    udev_device *input = udev_device_get_parent_with_subsystem_devtype(device, "input", nullptr);
    if (!node || !input)
        return {};
    udev_device *usb = udev_device_get_parent_with_subsystem_devtype(device, "usb", "usb_device");
    udev_device *hid = udev_device_get_parent_with_subsystem_devtype(device, "hid", nullptr);
    udev_device *whole = usb ? usb : hid ? hid : input;
    const QString usbSerial = attribute(usb, "serial");
    QString path = QString::fromUtf8(udev_device_get_property_value(usb ? usb : device, "ID_PATH"));
    if (path.isEmpty())
        path = portOf(attribute(input, "phys"));
    return EventDeviceInfo{.node = QString::fromUtf8(node),
                           .systemPath = QString::fromUtf8(udev_device_get_syspath(device)),
                           .devicePath = QString::fromUtf8(udev_device_get_syspath(whole)),
                           .name = nameOf(input, hid),
                           .bus = hexAttribute(input, "id/bustype"),
                           .vendor = hexAttribute(input, "id/vendor"),
                           .product = hexAttribute(input, "id/product"),
                           .version = hexAttribute(input, "id/version"),
                           .serial = usbSerial.isEmpty() ? attribute(input, "uniq") : usbSerial,
                           .path = path,
                           .seat = seatOf(device),
                           .isHid = hid != nullptr,
                           .keys = codes(input, "capabilities/key"),
                           .relativeAxes = codes(input, "capabilities/rel"),
                           .absoluteAxes = codes(input, "capabilities/abs")};
}

} // namespace

UdevEventDevices::UdevEventDevices(QObject *parent) : EventDeviceSource(parent), mUdev(udev_new())
{
    mSoon.setSingleShot(true);
    mSoon.callOnTimeout(this, &UdevEventDevices::changed);
    if (!mUdev)
        return;
    // udev reports a new node after its rules have granted the permissions, the kernel before.
    const bool isUdevRunning = QFile::exists(u"/run/udev/control"_s);
    mMonitor = udev_monitor_new_from_netlink(mUdev, isUdevRunning ? "udev" : "kernel");
    if (!mMonitor || udev_monitor_filter_add_match_subsystem_devtype(mMonitor, "input", nullptr) < 0
        || udev_monitor_enable_receiving(mMonitor) < 0) {
        qCWarning(lcKeyboard, "desktop: no messages from udev, so keyboards that are plugged in later are not found");
        return;
    }
    mNotifier = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(mMonitor), QSocketNotifier::Read);
    connect(mNotifier.get(), &QSocketNotifier::activated, this, &UdevEventDevices::readMonitor);
}

UdevEventDevices::~UdevEventDevices()
{
    mNotifier.reset();
    if (mMonitor)
        udev_monitor_unref(mMonitor);
    if (mUdev)
        udev_unref(mUdev);
}

QList<EventDeviceInfo> UdevEventDevices::nodes() const
{
    QList<EventDeviceInfo> nodes;
    udev_enumerate *enumeration = mUdev ? udev_enumerate_new(mUdev) : nullptr;
    if (!enumeration)
        return nodes;
    udev_enumerate_add_match_subsystem(enumeration, "input");
    udev_enumerate_add_match_sysname(enumeration, "event*");
    udev_enumerate_scan_devices(enumeration);
    udev_list_entry *entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumeration))
    {
        udev_device *device = udev_device_new_from_syspath(mUdev, udev_list_entry_get_name(entry));
        if (!device)
            continue; // removed meanwhile
        if (const std::optional<EventDeviceInfo> info = nodeInfo(device))
            nodes += *info;
        udev_device_unref(device);
    }
    udev_enumerate_unref(enumeration);
    return nodes;
}

void UdevEventDevices::watchRights(bool isWanted)
{
    if (isWanted == (mRights != nullptr))
        return;
    if (!isWanted) {
        mRights.reset();
        return;
    }
    mRights = std::make_unique<RightsWatch>();
    connect(mRights.get(), &RightsWatch::changed, this, &UdevEventDevices::signalSoon);
    signalSoon(); // the right may have come before the watch
}

void UdevEventDevices::readMonitor()
{
    for (int count = 0; count < wordsAtOnce; ++count) {
        udev_device *device = udev_monitor_receive_device(mMonitor);
        if (!device)
            break;
        udev_device_unref(device);
        signalSoon();
    }
}

void UdevEventDevices::signalSoon()
{
    if (!mSoon.isActive())
        mSoon.start();
}
