// SPDX-License-Identifier: MIT
// The DaemonServices of the running daemon: bus, desktop, clock and programs. Owned by the DaemonSession; main thread
// only.
#pragma once

#include "daemon/clientwatch.h"
#include "daemon/system/daemonservices.h"
#include "daemon/system/deadlinetimer.h"
#include "platform/distributednotificationcenter.h"

#include <QDBusConnection>
#include <QObject>

class DesktopNotices;

class SystemServices : public QObject
{
    Q_OBJECT

public:
    /// `notices` must outlive this.
    SystemServices(const QDBusConnection &bus, DesktopNotices &notices);

    /// The functions may be called as long as this exists.
    [[nodiscard]] DaemonServices functions();

Q_SIGNALS:
    void clientVanished(const QString &portName); ///< for DaemonServices::watchClient
    void timeReached();                           ///< for DaemonServices::wakeAt

private:
    DesktopNotices &mNotices;
    DistributedNotificationCenter mNotifications;
    ClientWatch mClientWatch;
    DeadlineTimer mTimer;
};
