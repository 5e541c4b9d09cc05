// SPDX-License-Identifier: MIT
#include "app/daemonobject.h"

#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage callTo(QLatin1StringView path, const QString &interface, const QString &method)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), path, interface, method);
    message.setAutoStartService(false);
    return message;
}

void send(const QDBusMessage &message, QObject *context, const DaemonObject::Then &then)
{
    constexpr int withoutLimit = std::numeric_limits<int>::max();
    auto *watcher = new QDBusPendingCallWatcher(sharedSessionBus().asyncCall(message, withoutLimit), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then] {
        watcher->deleteLater();
        then(watcher->reply());
    });
}

} // namespace

void DaemonObject::call(QLatin1StringView method, QObject *context, const Then &then,
                        const QVariantList &arguments) const
{
    QDBusMessage message = callTo(mPath, mInterface, method);
    message.setArguments(arguments);
    send(message, context, then);
}

void DaemonObject::read(QLatin1StringView property, QObject *context,
                        const std::function<void(const std::optional<QVariant> &)> &then) const
{
    QDBusMessage message = callTo(mPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << QString(mInterface) << QString(property);
    send(message, context, [then](const QDBusMessage &reply) {
        const bool isValue = reply.type() == QDBusMessage::ReplyMessage;
        then(isValue ? std::optional(reply.arguments().value(0).value<QDBusVariant>().variant()) : std::nullopt);
    });
}

void DaemonObject::connect(QLatin1StringView signal, QObject *receiver, const char *slot) const
{
    // From any sender: naming the daemon would make QtDBus ask the bus for its owner, and wait.
    sharedSessionBus().connect({}, mPath, mInterface, signal, receiver, slot);
}
