// SPDX-License-Identifier: MIT
#include "daemon/system/desktopnotification.h"

#include "daemon/system/logging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr int passingMs = 2000;
constexpr int usualTime = -1; // the service's own
constexpr int answerLimitMs = 5000;
constexpr uchar lowUrgency = 0;
constexpr uchar usualUrgency = 1;

} // namespace

void DesktopNotification::show(const Notice &notice)
{
    // The bubble to replace is known when the service has answered.
    if (mIsBusy)
        mNext = notice;
    else
        send(notice);
}

void DesktopNotification::send(const Notice &notice)
{
    mIsBusy = true;
    QDBusMessage message =
        QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                                       u"org.freedesktop.Notifications"_s, u"Notify"_s);
    const QVariantMap hints{{u"urgency"_s, QVariant::fromValue(notice.isPassing ? lowUrgency : usualUrgency)},
                            {u"transient"_s, notice.isPassing},
                            {u"desktop-entry"_s, u"org.quillkestra.Configurator"_s}};
    message.setArguments({u"Quill Kestra"_s, mShownId, u"org.quillkestra.Configurator"_s, notice.summary, notice.body,
                          QStringList(), hints, notice.isPassing ? passingMs : usualTime});
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(message, answerLimitMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (reply.isError())
            qCDebug(lcDaemon, "desktop: no on-screen display: %s", qUtf8Printable(reply.error().message()));
        answered(reply.isError() ? std::nullopt : std::optional<quint32>(reply.value()));
    });
}

void DesktopNotification::answered(std::optional<quint32> id)
{
    mIsBusy = false;
    mShownId = id.value_or(0);
    if (const std::optional<Notice> next = std::exchange(mNext, std::nullopt))
        send(*next);
}
