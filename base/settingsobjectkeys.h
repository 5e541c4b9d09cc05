// SPDX-License-Identifier: MIT
// The bus object with the state of the settings files. docs/daemon-protocol.md explains it.
#pragma once

#include <QLatin1StringView>

namespace SettingsObjectKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name
inline constexpr Key objectPath{"/Settings"};
inline constexpr Key interfaceName{"org.quillkestra.Settings"};

inline constexpr Key problems{"Problems"}; // a property

} // namespace SettingsObjectKeys
