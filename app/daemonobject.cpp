// SPDX-License-Identifier: MIT
#include "app/daemonobject.h"

#include "daemonlink/daemonobjectcall.h"
#include "platform/sessionbus.h"

#include <QDBusPendingCallWatcher>

#include <limits>

namespace {

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
    send(daemonObjectCall(mPath, mInterface, method, arguments), context, then);
}

void DaemonObject::read(QLatin1StringView property, QObject *context,
                        const std::function<void(const std::optional<QVariant> &)> &then) const
{
    send(daemonPropertyCall(mPath, mInterface, property), context, [then](const QDBusMessage &reply) {
        const bool isValue = reply.type() == QDBusMessage::ReplyMessage;
        then(isValue ? std::optional(daemonPropertyValue(reply.arguments())) : std::nullopt);
    });
}

void DaemonObject::connect(QLatin1StringView signal, QObject *receiver, const char *slot) const
{
    // From any sender: naming the daemon would make QtDBus ask the bus for its owner, and wait.
    sharedSessionBus().connect({}, mPath, mInterface, signal, receiver, slot);
}
