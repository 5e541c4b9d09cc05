// SPDX-License-Identifier: MIT
#include "daemon/settings/keysettings.h"

#include "base/document.h"
#include "base/profilerecord.h"

namespace {

std::shared_ptr<const ProfileKeys> profileKeysOf(const QVariantMap &profile, int index, const KeySettings &before)
{
    const QVariant source = ProfileRecord::keys(profile);
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
    const Document read(document);
    const QVariantList profiles = read.profiles();
    for (int index = 0; index < profiles.size(); ++index)
        settings.profiles.push_back(profileKeysOf(profiles.at(index).toMap(), index, before));
    settings.macros = playableMacros(read.macros(), before.macros);
    settings.activeProfile = read.activeProfileIndex();
    settings.isGameModeOn = read.deviceSettings().isGameModeOn();
    return settings;
}
