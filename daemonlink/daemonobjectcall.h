// SPDX-License-Identifier: MIT
// Messages to the daemon's objects on the bus, besides its request port. They start no daemon. The configurator sends
// them without waiting, kestractl waits for the reply. No state; any thread.
#pragma once

#include <QDBusMessage>
#include <QLatin1StringView>
#include <QVariant>
#include <QVariantList>

/// Returns a call of `method` on the object at `path`.
[[nodiscard]] QDBusMessage daemonObjectCall(QLatin1StringView path, const QString &interface, const QString &method,
                                            const QVariantList &arguments = {});

/// Returns a call that reads `property` of `interface`.
[[nodiscard]] QDBusMessage daemonPropertyCall(QLatin1StringView path, QLatin1StringView interface,
                                              QLatin1StringView property);

/// Returns the value in the reply to a daemonPropertyCall(), from the `values` of that reply.
[[nodiscard]] QVariant daemonPropertyValue(const QVariantList &values);
