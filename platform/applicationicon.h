// SPDX-License-Identifier: MIT
// Loads the icons of applications from the desktop's icon theme. Main thread only; the first call loads the theme.
#pragma once

#include <QIcon>

class QString;

namespace ApplicationIcon {

/// Returns the icon that a desktop entry names: its name in the icon theme or its full path. Without a usable icon,
/// returns the theme's or the style's icon for programs; never null.
[[nodiscard]] QIcon named(const QString &icon);

/// Returns the icon of the application at `path`, a desktop entry or a bundle; never null.
[[nodiscard]] QIcon ofApplication(const QString &path);

} // namespace ApplicationIcon
