// SPDX-License-Identifier: MIT
// The on-screen display of a profile switch: one bubble of the desktop's notification service
// (org.freedesktop.Notifications 1.2), replaced by the next. Owned by the daemon's process; the daemon's thread.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <optional>

/// A service that is missing or does not answer is no error: the switch has happened all the same.
class ProfileNotification : public QObject
{
    Q_OBJECT

public:
    explicit ProfileNotification(const QDBusConnection &bus) : mBus(bus) {}

    /// Shows the name of the profile that is now active. Does not wait; of several that come while the service is
    /// still busy with one, the last is shown.
    void show(const QString &profileName);

private:
    void send(const QString &profileName);
    void answered(std::optional<quint32> id);

    QDBusConnection mBus;
    quint32 mShownId = 0; // of the bubble to replace; 0: none
    bool mIsBusy = false;
    std::optional<QString> mNext;
};
