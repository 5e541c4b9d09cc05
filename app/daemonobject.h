// SPDX-License-Identifier: MIT
// An object of the daemon on the bus, for callers that must not wait. Main thread only.
#pragma once

#include <QDBusMessage>
#include <QLatin1StringView>
#include <QVariant>

#include <functional>
#include <optional>

class DaemonObject
{
public:
    using Then = std::function<void(const QDBusMessage &reply)>;

    constexpr DaemonObject(QLatin1StringView path, QLatin1StringView interface) : mPath(path), mInterface(interface) {}

    /// Calls a method. Later, `then` gets the reply or the error, unless `context` has been destroyed. Without a limit:
    /// a stopped daemon answers when it continues, and one that ends causes an error.
    void call(QLatin1StringView method, QObject *context, const Then &then, const QVariantList &arguments = {}) const;
    /// Reads a property. Later, `then` gets its value, absent after an error, unless `context` has been destroyed.
    void read(QLatin1StringView property, QObject *context,
              const std::function<void(const std::optional<QVariant> &)> &then) const;
    /// Connects a signal to a slot, as QDBusConnection::connect() does, without a question to the bus.
    void connect(QLatin1StringView signal, QObject *receiver, const char *slot) const;

private:
    QLatin1StringView mPath;
    QLatin1StringView mInterface;
};
