// SPDX-License-Identifier: MIT
#include "daemon/clientwatch.h"

#include "platform/messageport.h"

ClientWatch::ClientWatch(const QDBusConnection &bus)
{
    mWatcher.setConnection(bus);
    mWatcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&mWatcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { Q_EMIT vanished(mPortName); });
}

void ClientWatch::watch(const QString &portName)
{
    if (portName == mPortName)
        return;
    mPortName = portName;
    mWatcher.setWatchedServices(portName.isEmpty() ? QStringList() : QStringList{messagePortBusName(portName)});
    mOwner = portName.isEmpty() ? QString() : messagePortOwner(portName);
    // The client may have gone before the watch began. The signal is queued, so the caller first finishes its work.
    if (!portName.isEmpty() && mOwner.isEmpty())
        QMetaObject::invokeMethod(
            this, [this, portName] { Q_EMIT vanished(portName); }, Qt::QueuedConnection);
}
