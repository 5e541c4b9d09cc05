// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/gnomefrontapplication.h"

using namespace Qt::StringLiterals;

GnomeFrontApplication::GnomeFrontApplication(const GnomeShell &shell) : mShell(shell)
{
    connect(&mShell, &GnomeShell::reportsEnded, this, [this] { fail(u"GNOME Shell is gone"_s); });
}

void GnomeFrontApplication::start()
{
    if (mShell.hasReported())
        Q_EMIT ready();
    else
        fail(u"no extension of GNOME Shell has reported"_s);
}
