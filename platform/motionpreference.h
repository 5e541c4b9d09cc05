// SPDX-License-Identifier: MIT
// Whether the desktop allows animations, according to its settings portal. Without a portal they are allowed. The
// animated widget owns the object. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

class QDBusServiceWatcher;

/// Asks without waiting: isMotionAllowed() is true until the portal answers. Does not start the portal.
class MotionPreference : public QObject
{
    Q_OBJECT

public:
    /// Asks on `connection`, which may be disconnected.
    explicit MotionPreference(const QDBusConnection &connection, QObject *parent = nullptr);

    [[nodiscard]] bool isMotionAllowed() const { return mAreAnimationsOn && !mIsMotionReduced; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void readAll();
    void take(const QString &group, const QString &key, const QVariant &value);
    void set(bool &preference, bool value);

    QDBusConnection mConnection;
    QDBusServiceWatcher *mWatcher = nullptr;
    bool mAreAnimationsOn = true;
    bool mIsMotionReduced = false;
};
