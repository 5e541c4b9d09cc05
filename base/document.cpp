// SPDX-License-Identifier: MIT
#include "base/document.h"

#include "base/settingskeys.h"

QVariantList Document::profiles() const
{
    return mDictionary.value(SettingsKeys::profiles).toList();
}

QVariantList Document::macros() const
{
    return mDictionary.value(SettingsKeys::macros).toList();
}

QVariantMap Document::profile(int index) const
{
    return profiles().value(index).toMap();
}

QVariantMap Document::macro(int index) const
{
    return macros().value(index).toMap();
}

DeviceSettings Document::deviceSettings() const
{
    return DeviceSettings(mDictionary.value(SettingsKeys::deviceSettings).toMap());
}

int Document::activeProfileIndex() const
{
    return deviceSettings().activeProfileIndex();
}

QVariantMap Document::activeProfile() const
{
    return profile(activeProfileIndex());
}
