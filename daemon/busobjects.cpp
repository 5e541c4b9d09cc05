// SPDX-License-Identifier: MIT
#include "daemon/busobjects.h"

BusObjects::BusObjects(const Parts &parts)
    : mSettings(parts.store), mVirtualKeyboard(parts.virtualKeyboard), mDevices(parts.devices, parts.deviceChoice),
      mKeyWatch(parts.keyWatch), mFrontApplication(parts.frontApplication, parts.gnomeShell, parts.profiles),
      mHistory(parts.history, parts.historyCalls), mMacros(parts.macroReplacement, parts.macroTries, parts.captures)
{
}

bool BusObjects::registerOn(const QDBusConnection &bus)
{
    return mVirtualKeyboard.registerOn(bus) && mFrontApplication.registerOn(bus) && mDevices.registerOn(bus)
           && mKeyWatch.registerOn(bus) && mSettings.registerOn(bus) && mHistory.registerOn(bus)
           && mMacros.registerOn(bus);
}
