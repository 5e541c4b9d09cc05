// SPDX-License-Identifier: MIT
#include "cli/factoryprofile.h"

#include "base/resources.h"
#include "base/settingskeys.h"

using namespace Qt::StringLiterals;

std::optional<QVariantMap> factoryProfile()
{
    const QVariantMap settings = readDefaultSettings(resourcePath(u"Kestra.plist"_s)).value_or(QVariantMap());
    const QVariantMap profile = settings.value(SettingsKeys::profiles).toList().value(0).toMap();
    return profile.isEmpty() ? std::nullopt : std::optional(profile);
}
