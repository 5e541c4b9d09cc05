// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/seatbrightness.h"

#include "daemon/system/logging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

SeatBrightness::SeatBrightness(std::function<QDBusConnection()> connect, QObject *parent)
    : QObject(parent), mConnect(std::move(connect))
{
}

void SeatBrightness::set(const QString &led, uint brightness)
{
    // "auto" is the session of the caller or, for a user service, the one at the seat.
    QDBusMessage message =
        QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1/session/auto"_s,
                                       u"org.freedesktop.login1.Session"_s, u"SetBrightness"_s);
    message.setArguments({u"leds"_s, led, brightness});
    const QDBusConnection bus = mConnect();
    if (!bus.isConnected()) {
        logFailure(led, u"there is no system bus"_s);
        return;
    }
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, led](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        if (const QDBusPendingReply<> reply = *finished; reply.isError())
            logFailure(led, reply.error().message());
    });
}

void SeatBrightness::logFailure(const QString &led, const QString &reason)
{
    if (mHasFailed)
        return;
    mHasFailed = true;
    qCWarning(lcKeyboard, "keyboard: the session does not set the brightness of the LED %s: %s", qUtf8Printable(led),
              qUtf8Printable(reason));
}
