// SPDX-License-Identifier: MIT
// A desktop's notification service, on a private bus. Used on the test's thread.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <utility>

/// The object at /org/freedesktop/Notifications.
class NotificationService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Bubble
    {
        QString application;
        uint replacesId;
        QString summary;
        QString body;
        QVariantMap hints;
        int expireMs;
    };

    [[nodiscard]] static QString name() { return QStringLiteral("org.freedesktop.Notifications"); }

    NotificationService() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("service")))
    {
        mBus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                            QDBusConnection::ExportScriptableSlots);
        mBus.registerService(name());
    }
    ~NotificationService() override
    {
        mBus.unregisterService(name());
        QDBusConnection::disconnectFromBus(QStringLiteral("service"));
    }

    /// From now on calls wait until answer().
    void hold() { mIsHolding = true; }
    void answer()
    {
        mIsHolding = false;
        for (const QDBusMessage &call : std::exchange(mHeld, {}))
            mBus.send(call.createReply(QVariant(++mLastId)));
    }
    [[nodiscard]] QStringList summaries() const
    {
        QStringList result;
        for (const Bubble &bubble : bubbles)
            result += bubble.summary;
        return result;
    }

    QList<Bubble> bubbles;

public Q_SLOTS:
    Q_SCRIPTABLE uint Notify(const QString &application, uint replacesId, const QString &, const QString &summary,
                             const QString &body, const QStringList &, const QVariantMap &hints, int expireMs)
    {
        bubbles += {application, replacesId, summary, body, hints, expireMs};
        if (mIsHolding) {
            setDelayedReply(true);
            mHeld += message();
            return 0;
        }
        return replacesId != 0 ? replacesId : ++mLastId;
    }

private:
    QDBusConnection mBus;
    QList<QDBusMessage> mHeld;
    bool mIsHolding = false;
    uint mLastId = 40;
};
