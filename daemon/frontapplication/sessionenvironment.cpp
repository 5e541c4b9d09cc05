// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/sessionenvironment.h"

#include "daemon/system/logging.h"
#include "daemon/system/usermanager.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

SessionEnvironment::SessionEnvironment(const QDBusConnection &bus) : mBus(bus), mTaken(variables())
{
    mTaken.removeIf([](const QString &name) { return !qEnvironmentVariableIsEmpty(name.toLatin1().constData()); });
}

QStringList SessionEnvironment::variables()
{
    return {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"XAUTHORITY"_s, u"XDG_CURRENT_DESKTOP"_s, u"XDG_SESSION_TYPE"_s};
}

void SessionEnvironment::read(std::function<void()> done)
{
    QDBusMessage message = QDBusMessage::createMethodCall(UserManager::service, UserManager::path,
                                                          u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << QString(UserManager::interface) << u"Environment"_s;
    message.setAutoStartService(false);
    auto *watcher = new QDBusPendingCallWatcher(mBus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, done = std::move(done)] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            take(reply.value().variant().toStringList());
        done();
    });
}

void SessionEnvironment::take(const QStringList &assignments)
{
    for (const QString &name : std::as_const(mTaken)) {
        const QByteArray variable = name.toLatin1();
        const QString beginning = name + u'=';
        const auto found = std::ranges::find_if(
            assignments, [&](const QString &assignment) { return assignment.startsWith(beginning); });
        const QByteArray value =
            found == assignments.end() ? QByteArray() : found->sliced(beginning.size()).toLocal8Bit();
        if (value == qgetenv(variable.constData()))
            continue;
        qCDebug(lcFront, "the session has %s=%s", variable.constData(), value.constData());
        if (value.isEmpty())
            qunsetenv(variable.constData());
        else
            qputenv(variable.constData(), value);
    }
}
