// SPDX-License-Identifier: MIT
#include "base/devicesettings.h"

#include "base/plistnumbers.h"
#include "base/settingskeys.h"

using PlistNumbers::integerValue;

int DeviceSettings::activeProfileIndex() const
{
    return integerValue(mDictionary.value(SettingsKeys::activeProfile));
}

bool DeviceSettings::isGameModeOn() const
{
    return integerValue(mDictionary.value(SettingsKeys::gameMode)) != 0;
}

bool DeviceSettings::isProfileOsdOn() const
{
    return integerValue(mDictionary.value(SettingsKeys::profileOsdOn)) != 0;
}

int DeviceSettings::lastMacroId() const
{
    return integerValue(mDictionary.value(SettingsKeys::lastMacroId));
}
