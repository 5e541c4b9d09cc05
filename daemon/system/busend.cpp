// SPDX-License-Identifier: MIT
#include "daemon/system/busend.h"

#include "daemon/system/logging.h"

using namespace Qt::StringLiterals;

BusEnd::BusEnd(QDBusConnection bus, QObject *parent) : QObject(parent)
{
    // The D-Bus library itself sends this signal to the process when the connection ends; it never crosses a bus.
    if (!bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                     SLOT(tell())))
        qCCritical(lcDaemon, "daemon: the end of the bus cannot be noticed");
}
