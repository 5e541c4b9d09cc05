// SPDX-License-Identifier: MIT
#include "base/profilerecord.h"

#include "base/plistnumbers.h"
#include "base/settingskeys.h"

QString ProfileRecord::name(const QVariantMap &profile)
{
    return profile.value(SettingsKeys::profileName).toString();
}

std::optional<QString> ProfileRecord::givenName(const QVariantMap &profile)
{
    const QVariant name = profile.value(SettingsKeys::profileName);
    return name.typeId() == QMetaType::QString ? std::optional(name.toString()) : std::nullopt;
}

QVariantMap ProfileRecord::keys(const QVariantMap &profile)
{
    return profile.value(SettingsKeys::keys).toMap();
}

std::optional<QVariantMap> ProfileRecord::ownKeys(const QVariantMap &profile)
{
    const QVariant keys = profile.value(SettingsKeys::keys);
    return keys.typeId() == QMetaType::QVariantMap ? std::optional(keys.toMap()) : std::nullopt;
}

QVariantMap ProfileRecord::appInfo(const QVariantMap &profile)
{
    return profile.value(SettingsKeys::appInfo).toMap();
}

int ProfileRecord::autoSwitchValue(const QVariantMap &profile)
{
    return PlistNumbers::integerValue(profile.value(SettingsKeys::autoSwitchOn));
}
