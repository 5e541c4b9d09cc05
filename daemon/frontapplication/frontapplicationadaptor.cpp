// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/frontapplicationadaptor.h"

#include "base/frontapplicationkeys.h"
#include "daemon/frontapplication/processexecutable.h"

FrontApplicationObject::FrontApplicationObject(FrontApplicationWatch &watch, const ProfileSwitch &profiles,
                                               QObject *parent)
    : QObject(parent)
{
    new FrontApplicationAdaptor(watch, profiles, this);
}

bool FrontApplicationObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(FrontApplicationKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

FrontApplicationAdaptor::FrontApplicationAdaptor(FrontApplicationWatch &watch, const ProfileSwitch &profiles,
                                                 FrontApplicationObject *object)
    : QDBusAbstractAdaptor(object), mWatch(watch), mProfiles(profiles)
{
    connect(&profiles, &ProfileSwitch::applicationChanged, this, &FrontApplicationAdaptor::ProfileApplicationChanged);
}

void FrontApplicationAdaptor::TellWindow(const QString &windowClass, const QString &desktopEntry,
                                         const QString &processId)
{
    mWatch.report({.windowClass = windowClass,
                   .desktopEntry = desktopEntry,
                   .executable = processExecutable(processId.toUInt())});
}
