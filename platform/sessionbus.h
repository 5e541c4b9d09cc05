// SPDX-License-Identifier: MIT
// Connections to the session bus. The programs use these, not those that QDBusConnection makes, which one large message
// makes deaf for good:
//
// The bus library pauses reading while more than 63 MiB of a connection's messages are in use. Until they have been
// handled, it reads no answers to this program's calls either. Then it asks QtDBus to go on, on the thread that has
// handled the last message. QtDBus can do that on its own thread alone, and does not ("Socket notifiers cannot be
// enabled or disabled from another thread"). Seen with Qt 6.4.2 and libdbus 1.14.10.
//
// The connections from here never pause. They hold what was sent until the program's threads have handled it.
#pragma once

#include <QDBusConnection>
#include <QString>

/// The one connection that all parts of the process share. Any thread.
[[nodiscard]] QDBusConnection sharedSessionBus();

/// A connection of its own, which QDBusConnection knows by `name`, and which QDBusConnection::disconnectFromBus()
/// closes.
[[nodiscard]] QDBusConnection openSessionBus(const QString &name);
