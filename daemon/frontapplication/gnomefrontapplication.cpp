// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/gnomefrontapplication.h"

using namespace Qt::StringLiterals;

GnomeFrontApplication::GnomeFrontApplication(const GnomeShell &shell) : mShell(shell)
{
    connect(&mShell, &GnomeShell::reportsEnded, this, [this] { fail(u"the extension of GNOME Shell has ended"_s); });
}

void GnomeFrontApplication::start()
{
    // On X11, the name of the Shell may belong to any program, and the X server shows all windows.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        fail(u"WAYLAND_DISPLAY is not set"_s);
    else if (!mShell.hasReported())
        fail(u"no extension of GNOME Shell has reported"_s);
    else
        Q_EMIT ready();
}
