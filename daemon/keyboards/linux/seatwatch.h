// SPDX-License-Identifier: MIT
// Who is at a seat, according to the login manager: a session of this user, or another one. Owned by the DaemonSession;
// main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QSet>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <unistd.h>

class QDBusMessage;

/// While several users are logged in, one session is active at each seat. Keys that are typed there belong to its user.
class SeatWatch : public QObject
{
    Q_OBJECT

public:
    enum class Presence {
        unknown,  ///< the login manager has not answered yet
        here,     ///< a session of this user is active at the seat, or there is no login manager
        elsewhere ///< no session of this user is active at the seat
    };

    /// `connect` returns the bus of the login manager, and is called when it is first needed.
    explicit SeatWatch(std::function<QDBusConnection()> connect = QDBusConnection::systemBus, uint user = ::getuid(),
                       QObject *parent = nullptr);

    /// `seat`: for example "seat0". The first call asks the login manager. changed() reports its answer.
    [[nodiscard]] Presence at(const QString &seat);

Q_SIGNALS:
    void changed(); ///< the result of at()

private Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed);

private:
    /// The answer to one question. Later questions supersede earlier ones.
    struct Question
    {
        quint64 number = 0;
        qsizetype sessionsLeft = 0;
        QSet<QString> seats;
    };

    void start();
    void ask();
    void takeSessions(const QDBusMessage &reply, quint64 question);
    void takeActive(const QDBusMessage &reply, const QString &seat, quint64 question);
    void finish();
    void giveUp(const QString &reason);
    /// Calls `take` with the reply, which may be an error.
    void call(const QDBusMessage &message, std::function<void(const QDBusMessage &reply)> take);

    enum class State { idle, asking, answered, withoutManager };

    std::function<QDBusConnection()> mConnect;
    uint mUser;
    std::unique_ptr<QDBusConnection> mBus;
    QDBusServiceWatcher mManagerWatch;
    State mState = State::idle;
    Question mQuestion;
    QSet<QString> mSeats; // with an active session of this user
};
