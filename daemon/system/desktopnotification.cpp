// SPDX-License-Identifier: MIT
#include "daemon/system/desktopnotification.h"

#include "base/visibletext.h"
#include "daemon/system/logging.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView serviceName{"org.freedesktop.Notifications"};
constexpr int passingMs = 2000;
constexpr int usualTime = -1; // the service's default
constexpr int answerLimitMs = 5000;
constexpr uchar usualUrgency = 1; // GNOME shows no bubble for a lower one

} // namespace

void DesktopNotification::show(const Notice &notice)
{
    mUnshown.reset();
    // The id of the bubble to replace is known once the service has answered.
    if (mIsBusy)
        mNext = notice;
    else
        send(notice);
}

void DesktopNotification::send(const Notice &notice)
{
    mIsBusy = true;
    mHasServiceCome = false;
    if (!notice.isPassing)
        watchService(); // before a refusal can arrive, so no service is missed
    QDBusMessage message = QDBusMessage::createMethodCall(serviceName, u"/org/freedesktop/Notifications"_s,
                                                          u"org.freedesktop.Notifications"_s, u"Notify"_s);
    const QVariantMap hints{{u"urgency"_s, QVariant::fromValue(usualUrgency)},
                            {u"transient"_s, notice.isPassing},
                            {u"desktop-entry"_s, u"org.quillkestra.Configurator"_s}};
    message.setArguments({u"Quill Kestra"_s, mShownId, u"org.quillkestra.Configurator"_s,
                          visibleText(notice.summary, u' '), notice.body, QStringList(), hints,
                          notice.isPassing ? passingMs : usualTime});
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(message, answerLimitMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, notice] {
        watcher->deleteLater();
        answered(notice, *watcher);
    });
}

void DesktopNotification::answered(const Notice &notice, const QDBusPendingReply<uint> &reply)
{
    mIsBusy = false;
    mShownId = reply.isError() ? 0 : reply.value();
    if (reply.isError())
        qCDebug(lcDaemon, "desktop: no on-screen display: %s", qUtf8Printable(reply.error().message()));
    const bool isRefused = reply.isError() && reply.error().type() != QDBusError::NoReply; // otherwise it may appear
    if (const std::optional<Notice> next = std::exchange(mNext, std::nullopt))
        send(*next);
    else if (notice.isPassing || !isRefused)
        delete std::exchange(mServiceWatcher, nullptr);
    else if (mHasServiceCome)
        send(notice);
    else
        mUnshown = notice;
}

void DesktopNotification::watchService()
{
    if (mServiceWatcher)
        return;
    mServiceWatcher = new QDBusServiceWatcher(serviceName, mBus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(mServiceWatcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        mHasServiceCome = true;
        if (const std::optional<Notice> unshown = std::exchange(mUnshown, std::nullopt))
            send(*unshown);
    });
}
