// SPDX-License-Identifier: MIT
#include "app/attachedkeyboards.h"

#include "app/daemonobject.h"
#include "app/servicestatus.h"
#include "base/devicekeys.h"

#include <QDBusArgument>
#include <QDBusMetaType>

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

AttachedKeyboards::AttachedKeyboards(const ServiceStatus &service, QObject *parent) : QObject(parent)
{
    connect(&service, &ServiceStatus::daemonHasGone, this, [this] { set({}); });
    connect(&service, &ServiceStatus::daemonHasCome, this, &AttachedKeyboards::read);
}

void AttachedKeyboards::start()
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    devicesObject.connect("Changed"_L1, this, SLOT(read()));
    read();
}

void AttachedKeyboards::use(const QString &id, const Then &then)
{
    change("Use"_L1, {QStringList{id}}, then);
}

void AttachedKeyboards::useAlso(const QString &id, const Then &then)
{
    change("UseAlso"_L1, {QStringList{id}}, then);
}

void AttachedKeyboards::release(const Then &then)
{
    change("Release"_L1, {}, then);
}

void AttachedKeyboards::releaseOne(const QString &id, const Then &then)
{
    change("ReleaseThese"_L1, {QStringList{id}}, then);
}

void AttachedKeyboards::change(QLatin1StringView method, const QVariantList &arguments, const Then &then)
{
    devicesObject.call(
        method, this, [then](const QDBusMessage &reply) { then(resultOf(reply)); }, arguments);
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
