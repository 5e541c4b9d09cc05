// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/seatwatch.h"

#include "daemon/system/logging.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView service{"org.freedesktop.login1"};
constexpr QLatin1StringView managerPath{"/org/freedesktop/login1"};
constexpr QLatin1StringView managerInterface{"org.freedesktop.login1.Manager"};
constexpr QLatin1StringView sessionInterface{"org.freedesktop.login1.Session"};
constexpr QLatin1StringView properties{"org.freedesktop.DBus.Properties"};
constexpr QLatin1StringView active{"Active"};

struct Session
{
    QString seat; // empty for a session from the network
    QString path;
};

QList<Session> sessionsOf(uint user, const QDBusMessage &reply)
{
    QList<Session> sessions;
    const QDBusArgument list = reply.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString id;
        uint owner = 0;
        QString ownerName;
        QString seat;
        QDBusObjectPath path;
        list.beginStructure();
        list >> id >> owner >> ownerName >> seat >> path;
        list.endStructure();
        if (owner == user && !seat.isEmpty())
            sessions += {.seat = seat, .path = path.path()};
    }
    list.endArray();
    return sessions;
}

/// Whether a program has the call, but does not answer, or has ended before it did.
bool isWithoutAnswer(const QDBusMessage &reply)
{
    switch (QDBusError(reply).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut: return true;
    default: return false;
    }
}

} // namespace

SeatWatch::SeatWatch(std::function<QDBusConnection()> connect, uint user, Times times, QObject *parent)
    : QObject(parent), mConnect(std::move(connect)), mUser(user), mTimes(times), mPause(times.firstPause)
{
    mAskAgain.setSingleShot(true);
    mAskAgain.callOnTimeout(this, &SeatWatch::ask);
}

SeatWatch::Presence SeatWatch::at(const QString &seat)
{
    if (mState == State::idle)
        start();
    switch (mState) {
    case State::idle:
    case State::asking: return Presence::unknown;
    case State::withoutManager: return Presence::here;
    case State::answered: return mSeats.contains(seat) ? Presence::here : Presence::elsewhere;
    }
    return Presence::unknown;
}

void SeatWatch::start()
{
    mBus = std::make_unique<QDBusConnection>(mConnect());
    if (!mBus->isConnected()) {
        mState = State::withoutManager;
        return;
    }
    mState = State::asking;
    // Any object: the sessions and the seats. QtDBus accepts a slot only by name.
    (*mBus).connect(service, QString(), properties, u"PropertiesChanged"_s, this,
                    SLOT(propertiesChanged(QString, QVariantMap)));
    mManagerWatch.setConnection(*mBus);
    mManagerWatch.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    mManagerWatch.addWatchedService(service);
    connect(&mManagerWatch, &QDBusServiceWatcher::serviceRegistered, this, &SeatWatch::ask);
    ask();
}

void SeatWatch::propertiesChanged(const QString &, const QVariantMap &changed)
{
    // A session became active or inactive, or the seat has another active session. The latter also reports a logout.
    if (changed.contains(active) || changed.contains("ActiveSession"_L1))
        ask();
}

void SeatWatch::ask()
{
    mAskAgain.stop();
    mQuestion = {.number = mQuestion.number + 1, .sessionsLeft = 0, .seats = {}};
    const quint64 question = mQuestion.number;
    call(QDBusMessage::createMethodCall(service, managerPath, managerInterface, u"ListSessions"_s),
         [this, question](const QDBusMessage &reply) { takeSessions(reply, question); });
}

void SeatWatch::takeSessions(const QDBusMessage &reply, quint64 question)
{
    if (question != mQuestion.number)
        return;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a(susso)"_L1)
        return giveUp(reply);
    const QList<Session> sessions = sessionsOf(mUser, reply);
    mQuestion.sessionsLeft = sessions.size();
    if (sessions.isEmpty())
        return finish();
    for (const Session &session : sessions) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, session.path, properties, u"Get"_s);
        message.setArguments({QString(sessionInterface), QString(active)});
        call(message,
             [this, question, seat = session.seat](const QDBusMessage &answer) { takeActive(answer, seat, question); });
    }
}

void SeatWatch::takeActive(const QDBusMessage &reply, const QString &seat, quint64 question)
{
    if (question != mQuestion.number)
        return;
    if (isWithoutAnswer(reply))
        return askLater();
    // Another error means that the session has ended meanwhile.
    if (reply.type() == QDBusMessage::ReplyMessage
        && reply.arguments().value(0).value<QDBusVariant>().variant().toBool())
        mQuestion.seats += seat;
    if (--mQuestion.sessionsLeft == 0)
        finish();
}

void SeatWatch::finish()
{
    const bool isFirst = std::exchange(mState, State::answered) != State::answered;
    mHasAnswered = true;
    mPause = mTimes.firstPause;
    if (std::exchange(mSeats, mQuestion.seats) == mQuestion.seats && !isFirst)
        return;
    qCInfo(lcKeyboard, "keyboard: this user's session is active at %s",
           mSeats.isEmpty() ? "no seat" : qUtf8Printable(QStringList(mSeats.values()).join(u", "_s)));
    Q_EMIT changed();
}

/// A manager that has answered before is only restarting.
void SeatWatch::giveUp(const QDBusMessage &error)
{
    if (isWithoutAnswer(error))
        return askLater();
    if (mHasAnswered || mState != State::asking)
        return;
    qCInfo(lcKeyboard, "keyboard: no login manager (%s), so every session counts as active",
           qUtf8Printable(error.errorMessage()));
    mState = State::withoutManager;
    Q_EMIT changed();
}

/// There is a manager, so the seat may be another user's. An earlier answer is from before the change that it was asked
/// about.
void SeatWatch::askLater()
{
    ++mQuestion.number; // the other answers to this question no longer count
    if (mPause == mTimes.firstPause)
        qCWarning(lcKeyboard, "keyboard: the login manager does not answer, and no keyboard is used until it does");
    mAskAgain.start(mPause);
    mPause = std::min(mPause * 2, longestPause);
    if (std::exchange(mState, State::asking) != State::asking)
        Q_EMIT changed();
}

void SeatWatch::call(const QDBusMessage &message, std::function<void(const QDBusMessage &reply)> take)
{
    auto *watcher =
        new QDBusPendingCallWatcher(mBus->asyncCall(message, static_cast<int>(mTimes.answer.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [take = std::move(take)](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                take(finished->reply());
            });
}
