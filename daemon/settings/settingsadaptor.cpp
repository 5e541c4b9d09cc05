// SPDX-License-Identifier: MIT
#include "daemon/settings/settingsadaptor.h"

#include "base/settingsobjectkeys.h"

SettingsObject::SettingsObject(const SettingsStore &store, QObject *parent) : QObject(parent)
{
    new SettingsAdaptor(store, this);
}

bool SettingsObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(SettingsObjectKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

SettingsAdaptor::SettingsAdaptor(const SettingsStore &store, SettingsObject *object)
    : QDBusAbstractAdaptor(object), mStore(store)
{
    connect(object, &SettingsObject::problemFound, this, &SettingsAdaptor::Changed);
}
