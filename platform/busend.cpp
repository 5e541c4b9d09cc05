// SPDX-License-Identifier: MIT
#include "platform/busend.h"

using namespace Qt::StringLiterals;

BusEnd::BusEnd(QDBusConnection bus, QObject *parent) : QObject(parent)
{
    // The D-Bus library itself sends this to the process when the connection ends; it never crosses a bus.
    mIsWatching = bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
                              this, SLOT(reportEnd()));
}
