// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/gnomeshell.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

using namespace Qt::StringLiterals;

namespace {

const QString serviceName = u"org.gnome.Shell"_s;

} // namespace

GnomeShell::GnomeShell(const QDBusConnection &bus)
    : mWatcher(serviceName, bus, QDBusServiceWatcher::WatchForOwnerChange),
      mOwner(bus.interface()->serviceOwner(serviceName).value())
{
    connect(&mWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { setOwner(owner); });
}

void GnomeShell::setOwner(const QString &owner)
{
    if (owner == mOwner)
        return;
    mOwner = owner;
    if (std::exchange(mHasReported, false))
        Q_EMIT reportsEnded();
    Q_EMIT changed();
}

void GnomeShell::clientReported(const QString &client)
{
    if (isShell(client) && !std::exchange(mHasReported, true))
        Q_EMIT reportsBegun();
}

void GnomeShell::clientEnded(const QString &client)
{
    if (isShell(client) && std::exchange(mHasReported, false))
        Q_EMIT reportsEnded();
}
