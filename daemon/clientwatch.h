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

    /// Watches `portName` instead of the previous port. An empty name ends the watch. Asks the bus for the owner of the
    /// port.
    void watch(const QString &portName);
    /// The unique name on the bus of the program that had the port when its watch began; empty if none had it.
    [[nodiscard]] const QString &owner() const { return mOwner; }

Q_SIGNALS:
    /// Never emitted during watch(). Emitted also for a port without an owner when its watch began.
    void vanished(const QString &portName);

private:
    QDBusServiceWatcher mWatcher;
    QString mPortName;
    QString mOwner;
};
