// SPDX-License-Identifier: MIT
// A simulated login manager on the session bus: sessions, which of them are active, and the signals of their changes.
// Has a connection of its own, as another process would have.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QList>

class StandInLogin : public QDBusVirtualObject
{
    Q_OBJECT

public:
    struct Session
    {
        QString id;
        uint user = 0;
        QString seat;
        bool isActive = false;
    };

    StandInLogin() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("login manager")))
    {
        mBus.registerVirtualObject(QStringLiteral("/org/freedesktop/login1"), this, QDBusConnection::SubPath);
        registerAgain();
    }
    ~StandInLogin() override
    {
        unregister();
        QDBusConnection::disconnectFromBus(QStringLiteral("login manager"));
    }

    [[nodiscard]] int questions() const { return mQuestions; } ///< how often the sessions were listed
    void refuse(bool isRefusing) { mIsRefusing = isRefusing; }
    /// The next calls of this method, "ListSessions" or "Get", get no answer; empty: of none.
    void ignore(const QString &method) { mIgnored = method; }
    [[nodiscard]] int ignoredCalls() const { return mIgnoredCalls; }
    void registerAgain() { mBus.registerService(QStringLiteral("org.freedesktop.login1")); }
    void unregister() { mBus.unregisterService(QStringLiteral("org.freedesktop.login1")); }

    void set(const QList<Session> &sessions) { mSessions = sessions; }
    void setActive(const QString &id, bool isActive)
    {
        for (Session &session : mSessions) {
            if (session.id == id)
                session.isActive = isActive;
        }
        announce(id, QStringLiteral("Active"), isActive);
    }
    /// Reports a change of this property of the session.
    void announce(const QString &id, const QString &property, bool value)
    {
        announceAt(sessionPath(id), QStringLiteral("org.freedesktop.login1.Session"), property, value);
    }
    /// Reports that the seat has another active session.
    void announceSeat(const QString &seat)
    {
        announceAt(QStringLiteral("/org/freedesktop/login1/seat/") + seat,
                   QStringLiteral("org.freedesktop.login1.Seat"), QStringLiteral("ActiveSession"), QString());
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == mIgnored) {
            ++mIgnoredCalls;
            return true;
        }
        if (message.member() == QLatin1StringView("ListSessions")) {
            ++mQuestions;
            return connection.send(mIsRefusing
                                       ? message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no"))
                                       : message.createReply(list()));
        }
        for (const Session &session : std::as_const(mSessions)) {
            if (message.member() == QLatin1StringView("Get") && message.path() == sessionPath(session.id))
                return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(session.isActive))));
        }
        return false;
    }

private:
    static QString sessionPath(const QString &id) { return QStringLiteral("/org/freedesktop/login1/session/_3") + id; }

    void announceAt(const QString &path, const QString &interface, const QString &property, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                         QStringLiteral("PropertiesChanged"));
        signal.setArguments({interface, QVariantMap{{property, value}}, QStringList()});
        mBus.send(signal);
    }

    [[nodiscard]] QVariant list() const;

    QDBusConnection mBus;
    QList<Session> mSessions;
    QString mIgnored;
    int mQuestions = 0;
    int mIgnoredCalls = 0;
    bool mIsRefusing = false;
};

/// An entry of ListSessions.
struct StandInLoginEntry
{
    QString id;
    uint user = 0;
    QString userName;
    QString seat;
    QDBusObjectPath path;
};
Q_DECLARE_METATYPE(StandInLoginEntry)

inline QDBusArgument &operator<<(QDBusArgument &argument, const StandInLoginEntry &entry)
{
    argument.beginStructure();
    argument << entry.id << entry.user << entry.userName << entry.seat << entry.path;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, StandInLoginEntry &entry)
{
    argument.beginStructure();
    argument >> entry.id >> entry.user >> entry.userName >> entry.seat >> entry.path;
    argument.endStructure();
    return argument;
}

inline QVariant StandInLogin::list() const
{
    qDBusRegisterMetaType<StandInLoginEntry>();
    qDBusRegisterMetaType<QList<StandInLoginEntry>>();
    QList<StandInLoginEntry> entries;
    for (const Session &session : mSessions)
        entries +=
            {session.id, session.user, QStringLiteral("user"), session.seat, QDBusObjectPath(sessionPath(session.id))};
    return QVariant::fromValue(entries);
}
