// SPDX-License-Identifier: MIT
// What the keys need of the settings document, decoded once for each change of it. Values that are shared and never
// changed: made on the main thread, used on that of the keys.
#pragma once

#include "daemon/engine/keyassignment.h"
#include "daemon/engine/playablemacro.h"

#include <QVariantMap>

#include <memory>
#include <vector>

/// The keys of one profile.
struct ProfileKeys
{
    QVariant source; ///< what the map was made from
    KeyMap map;
};

struct KeySettings
{
    std::vector<std::shared_ptr<const ProfileKeys>> profiles; ///< by position in "Profiles"
    PlayableMacros macros;
    int activeProfile = 0; ///< position in `profiles`
    bool isGameModeOn = false;

    [[nodiscard]] bool hasProfile(int index) const
    {
        return index >= 0 && static_cast<std::size_t>(index) < profiles.size();
    }
};

/// `document`: valid and completed. `before`: the settings before the change; what has not changed is used again.
[[nodiscard]] KeySettings keySettingsOf(const QVariantMap &document, const KeySettings &before = {});
