// SPDX-License-Identifier: MIT
#include "cli/factoryprofile.h"

#include "base/resources.h"
#include "base/settingskeys.h"

using namespace Qt::StringLiterals;

CommandResult<QVariantMap> factoryProfile()
{
    const QVariantMap settings = readDefaultSettings(resourcePath(u"Kestra.plist"_s)).value_or(QVariantMap());
    const QVariantMap profile = settings.value(SettingsKeys::profiles).toList().value(0).toMap();
    if (profile.isEmpty())
        return wrongUsage(u"the factory settings cannot be read"_s);
    return profile;
}
