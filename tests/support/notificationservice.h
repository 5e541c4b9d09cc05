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
        QStringList actions;
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
    /// The user clicks a button of the last bubble, or dismisses it.
    void press(const QString &button) { pressOf(mLastId, button); }
    void pressOf(uint id, const QString &button) { post(QStringLiteral("ActionInvoked"), {id, button}); }
    void dismiss() { post(QStringLiteral("NotificationClosed"), {mLastId, 2U}); }
    [[nodiscard]] uint lastId() const { return mLastId; }
    /// Whether every bubble has its number.
    [[nodiscard]] bool hasAnswered() const { return mHeld.isEmpty(); }
    /// As answer(), but the button of the bubble is pressed before.
    void answerWithSignalFirst(const QString &button)
    {
        pressOf(mLastId + 1, button);
        answer();
    }
    [[nodiscard]] QStringList summaries() const
    {
        QStringList result;
        for (const Bubble &bubble : bubbles)
            result += bubble.summary;
        return result;
    }

    QList<Bubble> bubbles;
    QList<uint> closed; ///< by CloseNotification
    QStringList capabilities{QStringLiteral("actions"), QStringLiteral("body")};

public Q_SLOTS:
    Q_SCRIPTABLE uint Notify(const QString &application, uint replacesId, const QString &, const QString &summary,
                             const QString &body, const QStringList &actions, const QVariantMap &hints, int expireMs)
    {
        bubbles += {application, replacesId, summary, body, hints, expireMs, actions};
        if (mIsHolding) {
            setDelayedReply(true);
            mHeld += message();
            return 0;
        }
        return replacesId != 0 ? replacesId : ++mLastId;
    }
    Q_SCRIPTABLE QStringList GetCapabilities() { return capabilities; }
    Q_SCRIPTABLE void CloseNotification(uint id) { closed += id; }

private:
    void post(const QString &name, const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                          NotificationService::name(), name);
        message.setArguments(arguments);
        mBus.send(message);
    }

    QDBusConnection mBus;
    QList<QDBusMessage> mHeld;
    bool mIsHolding = false;
    uint mLastId = 40;
};
