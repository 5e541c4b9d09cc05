// SPDX-License-Identifier: MIT
// Sample event devices, and a simulated machine that has them. Used on the test's thread.
#pragma once

#include "daemon/keyboards/linux/eventdeviceinfo.h"
#include "daemon/keyboards/linux/udeveventdevices.h"

#include <linux/input-event-codes.h>

inline EventDeviceInfo node(int number, const QString &devicePath)
{
    return {.node = QStringLiteral("/dev/input/event%1").arg(number),
            .systemPath = QStringLiteral("/sys/devices%1/input%2").arg(devicePath).arg(number),
            .devicePath = devicePath,
            .name = QStringLiteral("Test board"),
            .bus = 3,
            .vendor = 0x1209,
            .product = 0xAB,
            .version = 0x0123,
            .isHid = true};
}

inline EventDeviceInfo keyboardNode(int number, const QString &devicePath)
{
    EventDeviceInfo info = node(number, devicePath);
    for (std::size_t code = KEY_ESC; code <= KEY_KPDOT; ++code)
        info.keys.set(code);
    return info;
}

inline EventDeviceInfo mediaNode(int number, const QString &devicePath)
{
    EventDeviceInfo info = node(number, devicePath);
    info.keys.set(KEY_PLAYPAUSE).set(KEY_VOLUMEUP).set(KEY_MUTE);
    return info;
}

class FakeNodeSource : public EventDeviceSource
{
    Q_OBJECT

public:
    [[nodiscard]] QList<EventDeviceInfo> nodes() const override { return mNodes; }

    void watchRights(bool isWanted) override { isWatchingRights = isWanted; }

    bool isWatchingRights = false;

    void set(const QList<EventDeviceInfo> &nodes)
    {
        mNodes = nodes;
        Q_EMIT changed();
    }

private:
    QList<EventDeviceInfo> mNodes;
};
