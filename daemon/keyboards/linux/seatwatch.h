// SPDX-License-Identifier: MIT
// Who is at a seat, according to the login manager: a session of this user, or another one. Owned by the DaemonSession;
// main thread only.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
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
        unknown,  ///< the login manager has not answered
        here,     ///< a session of this user is active at the seat, or there is no login manager
        elsewhere ///< no session of this user is active at the seat
    };

    /// How long it waits for an answer, and before it asks again. Each pause is twice as long as the one before, up to
    /// longestPause.
    struct Times
    {
        std::chrono::milliseconds answer = std::chrono::seconds(5);
        std::chrono::milliseconds firstPause = std::chrono::seconds(1);
    };
    static constexpr std::chrono::milliseconds longestPause = std::chrono::minutes(1);

    /// `connect` returns the bus of the login manager, and is called when it is first needed.
    explicit SeatWatch(std::function<QDBusConnection()> connect = QDBusConnection::systemBus, uint user = ::getuid())
        : SeatWatch(std::move(connect), user, Times())
    {
    }
    SeatWatch(std::function<QDBusConnection()> connect, uint user, Times times, QObject *parent = nullptr);

    /// `seat`: for example "seat0". The first call asks the login manager. changed() reports its answer.
    [[nodiscard]] Presence at(const QString &seat);

    /// Whether the login manager did not answer in time, and will be asked again.
    [[nodiscard]] bool willAskAgain() const { return mAskAgain.isActive(); }
    [[nodiscard]] std::chrono::milliseconds nextPause() const { return mPause; }

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
    void giveUp(const QDBusMessage &error);
    void askLater();
    /// Calls `take` with the reply, which may be an error.
    void call(const QDBusMessage &message, std::function<void(const QDBusMessage &reply)> take);

    enum class State { idle, asking, answered, withoutManager };

    std::function<QDBusConnection()> mConnect;
    uint mUser;
    Times mTimes;
    std::unique_ptr<QDBusConnection> mBus;
    QDBusServiceWatcher mManagerWatch;
    State mState = State::idle;
    bool mHasAnswered = false;
    QTimer mAskAgain;
    std::chrono::milliseconds mPause; // before asking again
    Question mQuestion;
    QSet<QString> mSeats; // with an active session of this user
};
