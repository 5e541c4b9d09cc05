// SPDX-License-Identifier: MIT
// A simulated service manager of the user, on a private bus: answers the daemon's requests.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QStringList>

/// Present on the bus during its lifetime.
class UserManagerService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.systemd1.Manager")
    Q_PROPERTY(QStringList Environment READ environment)

public:
    explicit UserManagerService(const QStringList &environment = {})
        : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("systemd"))),
          mEnvironment(environment)
    {
        mBus.registerObject(QStringLiteral("/org/freedesktop/systemd1"), this,
                            QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAllProperties);
        mBus.registerService(QStringLiteral("org.freedesktop.systemd1"));
    }
    ~UserManagerService() override
    {
        mBus.unregisterService(QStringLiteral("org.freedesktop.systemd1"));
        QDBusConnection::disconnectFromBus(QStringLiteral("systemd"));
    }

    [[nodiscard]] QStringList environment() const
    {
        ++readings;
        return mEnvironment;
    }
    void setEnvironment(const QStringList &environment) { mEnvironment = environment; }

    /// Announces that a job of `unit` has ended.
    void endJob(const QString &unit)
    {
        QDBusMessage message = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/systemd1"),
                                                          QStringLiteral("org.freedesktop.systemd1.Manager"),
                                                          QStringLiteral("JobRemoved"));
        message << 7u << QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/freedesktop/systemd1/job/7"))) << unit
                << QStringLiteral("done");
        mBus.send(message);
    }

    mutable int readings = 0;
    int subscribers = 0;

public Q_SLOTS:
    Q_SCRIPTABLE void Subscribe() { ++subscribers; }
    Q_SCRIPTABLE void Unsubscribe() { --subscribers; }

private:
    QDBusConnection mBus;
    QStringList mEnvironment;
};
