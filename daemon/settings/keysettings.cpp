// SPDX-License-Identifier: MIT
#include "daemon/settings/keysettings.h"

#include "base/settingskeys.h"
#include "daemon/settings/settingsdocument.h"

namespace {

std::shared_ptr<const ProfileKeys> profileKeysOf(const QVariantMap &profile, int index, const KeySettings &before)
{
    const QVariant source = profile.value(SettingsKeys::keys);
    if (before.hasProfile(index)) {
        const auto &kept = before.profiles[static_cast<std::size_t>(index)];
        if (kept->source == source)
            return kept;
    }
    return std::make_shared<const ProfileKeys>(ProfileKeys{.source = source, .map = KeyMap(profile)});
}

} // namespace

KeySettings keySettingsOf(const QVariantMap &document, const KeySettings &before)
{
    KeySettings settings;
    const QVariantList profiles = SettingsDocument::profiles(document);
    for (int index = 0; index < profiles.size(); ++index)
        settings.profiles.push_back(profileKeysOf(profiles.at(index).toMap(), index, before));
    settings.macros = playableMacros(SettingsDocument::macros(document), before.macros);
    settings.activeProfile = SettingsDocument::activeProfileIndex(document);
    settings.isGameModeOn = SettingsDocument::isGameModeOn(document);
    return settings;
}
