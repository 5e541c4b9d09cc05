// SPDX-License-Identifier: MIT
// Notices when a client's reply port loses its owner. Owned by the SystemServices; main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

/// Watches at most one port at a time.
class ClientWatch : public QObject
{
    Q_OBJECT

public:
    explicit ClientWatch(const QDBusConnection &bus);

    /// Watches `portName` instead of the previous port. An empty name ends the watch. Asks the bus whether the port has
    /// an owner.
    void watch(const QString &portName);

Q_SIGNALS:
    /// Never emitted during watch(). Emitted also for a port without an owner when its watch began.
    void vanished(const QString &portName);

private:
    QDBusServiceWatcher mWatcher;
    QString mPortName;
};
