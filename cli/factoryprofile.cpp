// SPDX-License-Identifier: MIT
#include "cli/factoryprofile.h"

#include "app/util/propertylist.h"
#include "app/util/resources.h"
#include "app/util/settingskeys.h"

using namespace Qt::StringLiterals;

std::optional<QVariantMap> factoryProfile()
{
    const auto resource = PropertyList::readPropertyListFile(resourcePath(u"Kestra.plist"_s)).value_or(QVariantMap());
    const QVariantMap settings = resource.value(SettingsKeys::defaultSettings).toMap();
    const QVariantMap profile = settings.value(SettingsKeys::profiles).toList().value(0).toMap();
    return profile.isEmpty() ? std::nullopt : std::optional(profile);
}
