// SPDX-License-Identifier: MIT
#include "daemon/settings/factorysettings.h"

#include "base/document.h"
#include "base/resources.h"
#include "base/settingskeys.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/logging.h"

using namespace Qt::StringLiterals;

std::optional<QVariantMap> readFactorySettings(const QString &path)
{
    const std::optional<QVariantMap> settings = readDefaultSettings(path);
    if (!settings) {
        qCWarning(lcSettings, "file: no factory settings in %s", qUtf8Printable(path));
        return {};
    }
    QVariantMap document = *settings;
    // The resource may omit the device's own settings, which the daemon adds.
    if (!document.contains(SettingsKeys::deviceSettings))
        document.insert(SettingsKeys::deviceSettings, QVariantMap());
    if (!Document(document).deviceSettings().dictionary().contains(SettingsKeys::activeProfile))
        document = SettingsDocument::withActiveProfile(document, 0);
    if (const Result<void> valid = SettingsDocument::validate(document); !valid) {
        qCWarning(lcSettings, "file: the factory settings in %s are not valid: %s", qUtf8Printable(path),
                  qUtf8Printable(valid.error().message));
        return {};
    }
    return SettingsDocument::completed(document);
}
