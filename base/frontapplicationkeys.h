// SPDX-License-Identifier: MIT
// Names for the application in front on the bus. docs/daemon-protocol.md explains them.
#pragma once

#include <QLatin1StringView>

namespace FrontApplicationKeys {

using Key = QLatin1StringView;

// The object of the daemon's bus name
inline constexpr Key objectPath{"/FrontApplication"};
inline constexpr Key interfaceName{"org.quillkestra.FrontApplication"};

inline constexpr Key needsShellExtension{"NeedsShellExtension"};
inline constexpr Key shellExtensionPackage{"gnome-shell-extension-quill-kestra"}; ///< the distribution's package

inline constexpr Key noSource{"none"}; ///< the "Source" when nothing reports windows

} // namespace FrontApplicationKeys
