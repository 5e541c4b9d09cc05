// SPDX-License-Identifier: MIT
#include "daemon/settings/startdocument.h"

#include "base/resources.h"
#include "daemon/settings/factorysettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/logging.h"

#include <optional>

using namespace Qt::StringLiterals;

StartDocument readStartDocument(SettingsStore &store)
{
    if (const std::optional<QVariantMap> stored = store.load())
        return {.document = SettingsDocument::completed(*stored), .isMinimal = false};
    qCInfo(lcSettings, "no usable settings: factory settings");
    if (const std::optional<QVariantMap> factory = readFactorySettings(resourcePath(u"Kestra.plist"_s)))
        return {.document = *factory, .isMinimal = false};
    qCWarning(lcSettings, "file: no factory settings either: one profile that maps nothing");
    return {.document = SettingsDocument::minimal(), .isMinimal = true};
}
