// SPDX-License-Identifier: MIT
// The applications that have a window on an X11 display, read once. No state; any thread.
#pragma once

#include "base/frontapplication.h"

#include <QByteArray>
#include <QList>

namespace ApplicationWindows {

/// The applications with a window that the window manager of the X server `display` (":0") lists, in the order in which
/// the windows were opened, each application once. Panels and the desktop do not count, nor do windows of this process.
/// The program of a window is left unknown: in a sandbox, the process number that the window names is another
/// process's. Empty without a server or a window manager. A server that does not answer blocks the call.
[[nodiscard]] QList<FrontApplication> read(const QByteArray &display);

} // namespace ApplicationWindows
