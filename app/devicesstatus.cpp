// SPDX-License-Identifier: MIT
#include "app/devicesstatus.h"

#include "app/daemonobject.h"
#include "base/devicekeys.h"

#include <QDBusArgument>
#include <QVariantMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject devicesObject(DeviceKeys::objectPath, DeviceKeys::interfaceName);

QStringList namesInUse(const QList<QVariantMap> &devices)
{
    QStringList names;
    for (const QVariantMap &device : devices) {
        if (!device.value(DeviceKeys::isInUse).toBool())
            continue;
        const QVariant name = device.value(DeviceKeys::name);
        const bool isUnique =
            std::ranges::count_if(devices,
                                  [&name](const QVariantMap &each) { return each.value(DeviceKeys::name) == name; })
            == 1;
        names += isUnique ? name.toString() : name.toString() + u' ' + device.value(DeviceKeys::id).toString();
    }
    return names;
}

} // namespace

void DevicesStatus::start()
{
    devicesObject.connect("Changed"_L1, this, SLOT(read()));
    read();
}

bool DevicesStatus::isVirtual() const
{
    return mKeyboards && mKeyboards->state == DeviceKeys::stateReleased;
}

void DevicesStatus::read()
{
    devicesObject.call("Status"_L1, this, [this](const QDBusMessage &status) {
        if (status.type() != QDBusMessage::ReplyMessage)
            return set({});
        const auto values = qdbus_cast<QVariantMap>(status.arguments().value(0));
        devicesObject.call("List"_L1, this, [this, values](const QDBusMessage &list) {
            if (list.type() != QDBusMessage::ReplyMessage)
                return set({});
            const auto devices = qdbus_cast<QList<QVariantMap>>(list.arguments().value(0));
            set(KeyboardsInUse{.state = values.value(DeviceKeys::state).toString(), .names = namesInUse(devices)});
        });
    });
}

void DevicesStatus::set(const std::optional<KeyboardsInUse> &keyboards)
{
    if (keyboards == mKeyboards)
        return;
    mKeyboards = keyboards;
    Q_EMIT changed();
}
