// SPDX-License-Identifier: MIT
#include "profiles/applicationbinding.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "platform/applicationinformation.h"

using namespace Qt::StringLiterals;

namespace {

QString textAt(const QVariantMap &information, QLatin1StringView key)
{
    const QVariant value = information.value(key);
    return value.typeId() == QMetaType::QString && !value.isNull() ? value.toString() : u""_s;
}

} // namespace

QVariantMap ApplicationBinding::bound(QVariantMap appInfo, const QVariantMap &information)
{
    const QString executable = textAt(information, ApplicationInformation::executableKey);
    const QString name = textAt(information, ApplicationInformation::nameKey);
    appInfo[SettingsKeys::application] = name.isEmpty() ? executable : name;
    appInfo[SettingsKeys::executable] = executable;
    appInfo[SettingsKeys::identifier] = textAt(information, ApplicationInformation::identifierKey);
    appInfo[SettingsKeys::signature] = textAt(information, ApplicationInformation::signatureKey);
    return appInfo;
}

bool ApplicationBinding::namesAnApplication(const QVariantMap &appInfo)
{
    const auto has = [&appInfo](QLatin1StringView key) { return !appInfo.value(key).toString().isEmpty(); };
    return has(SettingsKeys::application) || has(SettingsKeys::executable) || has(SettingsKeys::identifier);
}

QVariantMap ApplicationBinding::unbound(QVariantMap appInfo)
{
    return bound(std::move(appInfo), {});
}

QString ApplicationBinding::applicationOf(const QVariantMap &profile)
{
    return ProfileRecord::appInfo(profile).value(SettingsKeys::application).toString();
}

bool ApplicationBinding::nameTheSameApplication(const QVariantMap &appInfo, const QVariantMap &other)
{
    const auto has = [&](QLatin1StringView key) {
        return !textAt(appInfo, key).isEmpty() || !textAt(other, key).isEmpty();
    };
    const auto isSame = [&](QLatin1StringView key) {
        const QString text = textAt(appInfo, key);
        return !text.isEmpty() && text.compare(textAt(other, key), Qt::CaseInsensitive) == 0;
    };
    if (has(SettingsKeys::identifier) || has(SettingsKeys::signature))
        return isSame(SettingsKeys::identifier) || isSame(SettingsKeys::signature);
    return isSame(SettingsKeys::executable) || isSame(SettingsKeys::application);
}

std::optional<int> ApplicationBinding::otherProfileFollowing(const QVariantList &profiles, int row)
{
    const QVariantMap appInfo = ProfileRecord::appInfo(profiles.value(row).toMap());
    for (int other = 0; other < profiles.size(); ++other) {
        const QVariantMap profile = profiles.at(other).toMap();
        if (other != row && ProfileRecord::autoSwitchValue(profile) != 0
            && nameTheSameApplication(appInfo, ProfileRecord::appInfo(profile)))
            return other;
    }
    return {};
}
