// SPDX-License-Identifier: MIT
// How the application in front is told on the bus. docs/daemon-protocol.md explains it.
#pragma once

#include <QLatin1StringView>

namespace FrontApplicationKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name
inline constexpr Key objectPath{"/FrontApplication"};
inline constexpr Key interfaceName{"org.quillkestra.FrontApplication"};

inline constexpr Key noSource{"none"}; ///< the "Source" where nothing tells of windows

} // namespace FrontApplicationKeys
