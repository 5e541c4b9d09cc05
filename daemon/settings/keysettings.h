// SPDX-License-Identifier: MIT
// The parts of the settings document that the keys need, decoded once for each change. Shared, immutable values: made
// on the main thread, used on the thread of the keys.
#pragma once

#include "daemon/engine/keyassignment.h"
#include "daemon/engine/playablemacro.h"

#include <QVariantMap>

#include <memory>
#include <vector>

/// The keys of one profile.
struct ProfileKeys
{
    QVariant source; ///< the source of the map
    KeyMap map;
};

struct KeySettings
{
    std::vector<std::shared_ptr<const ProfileKeys>> profiles; ///< by index in "Profiles"
    PlayableMacros macros;
    int activeProfile = 0; ///< index in `profiles`
    bool isGameModeOn = false;

    [[nodiscard]] bool hasProfile(int index) const
    {
        return index >= 0 && static_cast<std::size_t>(index) < profiles.size();
    }
};

/// `document`: valid and completed. `before`: the settings before the change, whose unchanged parts are reused.
[[nodiscard]] KeySettings keySettingsOf(const QVariantMap &document, const KeySettings &before = {});
