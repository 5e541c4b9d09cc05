// SPDX-License-Identifier: MIT
#include "platform/sessionbus.h"

#include <dlfcn.h>
#include <limits>
#include <mutex>

namespace {

/// Sets the size of messages at which reading pauses so high that it is never reached. QtDBus has no function for it.
/// The bus library that QtDBus uses has: it is asked for by name, because it need not be there when this is built.
void neverPauseReading(const QDBusConnection &bus)
{
    using SetMaximum = void (*)(void *connection, long bytes);
    static const auto setMaximum = [] {
        void *library = ::dlopen("libdbus-1.so.3", RTLD_LAZY | RTLD_NOLOAD);
        return library ? reinterpret_cast<SetMaximum>(::dlsym(library, "dbus_connection_set_max_received_size"))
                       : nullptr;
    }();
    if (!setMaximum) {
        static std::once_flag isReported;
        std::call_once(isReported,
                       [] { qWarning("the bus library has changed: large messages may end the connection"); });
        return;
    }
    if (void *connection = bus.internalPointer())
        setMaximum(connection, std::numeric_limits<long>::max());
}

} // namespace

QDBusConnection sharedSessionBus()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    static std::once_flag isPrepared;
    std::call_once(isPrepared, neverPauseReading, bus);
    return bus;
}

QDBusConnection openSessionBus(const QString &name)
{
    const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    neverPauseReading(bus);
    return bus;
}
