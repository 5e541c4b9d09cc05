// SPDX-License-Identifier: MIT
#include "app/attachedkeyboards.h"

#include "app/daemonobject.h"
#include "base/daemonprotocol.h"
#include "base/devicekeys.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusServiceWatcher>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject devicesObject(DeviceKeys::objectPath, DeviceKeys::interfaceName);

Result<void> resultOf(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage)
        return {};
    return Error{reply.errorMessage()};
}

} // namespace

void AttachedKeyboards::start()
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    auto *watcher = new QDBusServiceWatcher(messagePortBusName(DaemonProtocol::requestPortName), sharedSessionBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { set({}); });
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &AttachedKeyboards::read);
    devicesObject.connect("Changed"_L1, this, SLOT(read()));
    read();
}

void AttachedKeyboards::use(const QString &id, const Then &then)
{
    devicesObject.call("Use"_L1, this, [then](const QDBusMessage &reply) { then(resultOf(reply)); }, {QStringList{id}});
}

void AttachedKeyboards::release(const Then &then)
{
    devicesObject.call("Release"_L1, this, [then](const QDBusMessage &reply) { then(resultOf(reply)); });
}

void AttachedKeyboards::read()
{
    devicesObject.call("List"_L1, this, [this](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "aa{sv}"_L1)
            return set({});
        set(qdbus_cast<QList<QVariantMap>>(reply.arguments().constFirst()));
    });
}

void AttachedKeyboards::set(const std::optional<QList<QVariantMap>> &list)
{
    if (std::exchange(mList, list) != list)
        Q_EMIT changed();
}
