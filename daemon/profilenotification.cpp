// SPDX-License-Identifier: MIT
#include "daemon/profilenotification.h"

#include "daemon/logging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr int shownMs = 2000;
constexpr int answerLimitMs = 5000;
constexpr uchar lowUrgency = 0;

} // namespace

void ProfileNotification::show(const QString &profileName)
{
    // The bubble to replace is known when the service has answered.
    if (mIsBusy)
        mNext = profileName;
    else
        send(profileName);
}

void ProfileNotification::send(const QString &profileName)
{
    mIsBusy = true;
    QDBusMessage message =
        QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                                       u"org.freedesktop.Notifications"_s, u"Notify"_s);
    const QVariantMap hints{{u"urgency"_s, QVariant::fromValue(lowUrgency)},
                            {u"transient"_s, true},
                            {u"desktop-entry"_s, u"org.quillkestra.Configurator"_s}};
    // The profile's name is the whole message, so that there is nothing to translate.
    message.setArguments({u"Quill Kestra"_s, mShownId, u"org.quillkestra.Configurator"_s, profileName, QString(),
                          QStringList(), hints, shownMs});
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(message, answerLimitMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isError())
            qCDebug(lcDaemon, "desktop: no on-screen display: %s", qUtf8Printable(reply.error().message()));
        answered(reply.isError() ? std::nullopt : std::optional<quint32>(reply.value()));
    });
}

void ProfileNotification::answered(std::optional<quint32> id)
{
    mIsBusy = false;
    mShownId = id.value_or(0);
    if (const std::optional<QString> next = std::exchange(mNext, std::nullopt))
        send(*next);
}
