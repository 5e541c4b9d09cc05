// SPDX-License-Identifier: MIT
// Address of the user's service manager on the session bus (systemd's org.freedesktop.systemd1(5)).
#pragma once

#include <QLatin1StringView>

namespace UserManager {

inline constexpr QLatin1StringView service{"org.freedesktop.systemd1"};
inline constexpr QLatin1StringView path{"/org/freedesktop/systemd1"};
inline constexpr QLatin1StringView interface {
    "org.freedesktop.systemd1.Manager"
};

} // namespace UserManager
