// SPDX-License-Identifier: MIT
#include "daemon/system/desktopquestion.h"

#include "base/visibletext.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

const QString serviceName = u"org.freedesktop.Notifications"_s; // also of its interface
const QString servicePath = u"/org/freedesktop/Notifications"_s;
constexpr int answerLimitMs = 5000;
constexpr int staysMs = 0;
constexpr uchar critical = 2; // other bubbles disappear by themselves on some desktops

} // namespace

DesktopQuestion::~DesktopQuestion()
{
    close();
}

template <typename Function>
void DesktopQuestion::call(const QString &service, const QString &method, const QVariantList &arguments,
                           Function answered)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, servicePath, serviceName, method);
    message.setArguments(arguments);
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(message, answerLimitMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, turn = mTurn, answered] {
        watcher->deleteLater();
        answered(watcher->reply(), turn == mTurn);
    });
}

void DesktopQuestion::show(const Bubble &bubble)
{
    close();
    call(serviceName, u"GetCapabilities"_s, {}, [this, bubble](const QDBusMessage &reply, bool isCurrent) {
        if (!isCurrent)
            return;
        if (reply.type() != QDBusMessage::ReplyMessage)
            Q_EMIT impossible(Obstacle::noService);
        else if (!reply.arguments().value(0).toStringList().contains("actions"_L1))
            Q_EMIT impossible(Obstacle::noButtons);
        else
            send(bubble, reply.service());
    });
}

void DesktopQuestion::send(const Bubble &bubble, const QString &service)
{
    mService = service;
    listen(true); // before the bubble can be answered
    const QVariantMap hints{{u"urgency"_s, QVariant::fromValue(critical)},
                            {u"desktop-entry"_s, u"org.quillkestra.Configurator"_s}};
    const QVariantList arguments{u"Quill Kestra"_s,
                                 0U,
                                 u"org.quillkestra.Configurator"_s,
                                 visibleText(bubble.summary, u' '),
                                 bubble.body,
                                 bubble.buttons,
                                 hints,
                                 staysMs};
    call(service, u"Notify"_s, arguments, [this, service](const QDBusMessage &reply, bool isCurrent) {
        const QDBusPendingReply<uint> id = reply;
        if (!isCurrent) { // closed meanwhile
            if (!id.isError())
                call(service, u"CloseNotification"_s, {id.value()}, [](const QDBusMessage &, bool) {});
            return;
        }
        if (id.isError()) {
            forget();
            Q_EMIT impossible(Obstacle::noService);
            return;
        }
        mId = id.value();
        const quint64 turn = mTurn;
        Q_EMIT shown();
        for (const auto &[early, button] : std::exchange(mEarly, {})) {
            if (turn == mTurn)
                take(early, button);
        }
    });
}

void DesktopQuestion::listen(bool isOn)
{
    mWatcher.reset();
    if (!isOn) {
        mBus.disconnect(mService, servicePath, serviceName, u"ActionInvoked"_s, this, SLOT(takeButton(uint, QString)));
        mBus.disconnect(mService, servicePath, serviceName, u"NotificationClosed"_s, this,
                        SLOT(takeClosing(uint, uint)));
        return;
    }
    mBus.connect(mService, servicePath, serviceName, u"ActionInvoked"_s, this, SLOT(takeButton(uint, QString)));
    mBus.connect(mService, servicePath, serviceName, u"NotificationClosed"_s, this, SLOT(takeClosing(uint, uint)));
    mWatcher = std::make_unique<QDBusServiceWatcher>(mService, mBus, QDBusServiceWatcher::WatchForUnregistration);
    connect(mWatcher.get(), &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        // Queued, because it destroys the watcher.
        QMetaObject::invokeMethod(
            this,
            [this, turn = mTurn] {
                if (turn == mTurn && mId != 0)
                    take(mId, {});
            },
            Qt::QueuedConnection);
    });
}

void DesktopQuestion::takeButton(uint id, const QString &button)
{
    if (!button.isEmpty())
        take(id, button);
}

void DesktopQuestion::takeClosing(uint id, uint)
{
    take(id, {});
}

void DesktopQuestion::take(uint id, const QString &button)
{
    if (mId == 0 && !mService.isEmpty()) {
        mEarly += {id, button};
        return;
    }
    if (id != mId || mService.isEmpty())
        return; // of another program's bubble, or closed
    if (button.isEmpty()) {
        forget();
        Q_EMIT dismissed();
    } else {
        close(); // some services keep the bubble
        Q_EMIT pressed(button);
    }
}

void DesktopQuestion::close()
{
    if (mId != 0)
        call(mService, u"CloseNotification"_s, {mId}, [](const QDBusMessage &, bool) {});
    forget();
}

void DesktopQuestion::forget()
{
    ++mTurn;
    if (!mService.isEmpty())
        listen(false);
    mService.clear();
    mId = 0;
    mEarly.clear();
}
