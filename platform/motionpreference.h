// SPDX-License-Identifier: MIT
// Whether the desktop lets pictures move, as its settings portal tells; allowed where there is none. Owned by what
// moves. Main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

class QDBusServiceWatcher;

/// Asks without waiting: isMotionAllowed() is true until the portal has answered. Does not start the portal.
class MotionPreference : public QObject
{
    Q_OBJECT

public:
    /// Asks on `connection`, which may be one without a bus.
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
