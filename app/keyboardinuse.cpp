// SPDX-License-Identifier: MIT
#include "app/keyboardinuse.h"

#include "base/daemonprotocol.h"
#include "base/devicekeys.h"
#include "platform/messageport.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <utility>

using namespace Qt::StringLiterals;

KeyboardInUse::KeyboardInUse(const QDBusConnection &bus, QObject *parent) : QObject(parent), mBus(bus)
{
    const QString daemon = messagePortBusName(DaemonProtocol::requestPortName);
    auto *watcher = new QDBusServiceWatcher(daemon, mBus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setStatus({}); });
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &KeyboardInUse::read);
    mBus.connect(daemon, DeviceKeys::objectPath, DeviceKeys::interfaceName, u"Changed"_s, this, SLOT(read()));
    read();
}

bool KeyboardInUse::isVirtual() const
{
    return mStatus.state == DeviceKeys::stateReleased;
}

void KeyboardInUse::read()
{
    QDBusMessage call = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                       DeviceKeys::objectPath, DeviceKeys::interfaceName, u"Status"_s);
    call.setAutoStartService(false);
    auto *reply = new QDBusPendingCallWatcher(mBus.asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        reply->deleteLater();
        const QDBusMessage message = reply->reply();
        if (message.type() != QDBusMessage::ReplyMessage || message.signature() != "a{sv}"_L1)
            return setStatus({});
        const auto status = qdbus_cast<QVariantMap>(message.arguments().constFirst());
        setStatus({status.value(DeviceKeys::state).toString(), status.value(DeviceKeys::names).toStringList(),
                   status.value(DeviceKeys::problem).toString()});
    });
}

void KeyboardInUse::setStatus(const Status &status)
{
    if (std::exchange(mStatus, status) != status)
        Q_EMIT changed();
}
