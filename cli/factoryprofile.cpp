// SPDX-License-Identifier: MIT
#include "cli/factoryprofile.h"

#include "base/document.h"
#include "base/resources.h"

using namespace Qt::StringLiterals;

CommandResult<QVariantMap> factoryProfile()
{
    const QVariantMap settings = readDefaultSettings(resourcePath(u"Kestra.plist"_s)).value_or(QVariantMap());
    const QVariantMap profile = Document(settings).profile(0);
    if (profile.isEmpty())
        return wrongUsage(u"the factory settings cannot be read"_s);
    return profile;
}
