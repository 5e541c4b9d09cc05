// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/frontapplicationsources.h"

#include "daemon/frontapplication/gnomefrontapplication.h"
#include "daemon/frontapplication/kwinfrontapplication.h"
#include "daemon/frontapplication/waylandfrontapplication.h"
#include "daemon/frontapplication/x11frontapplication.h"

using namespace Qt::StringLiterals;

std::vector<FrontApplicationWatch::SourceKind> frontApplicationSources(const QDBusConnection &bus,
                                                                       const GnomeShell &shell)
{
    // X11 comes last: on Wayland, an X server knows only some of the windows.
    return {{"wayland"_L1, [] { return std::make_unique<WaylandFrontApplication>(); }},
            {"kwin"_L1, [bus] { return std::make_unique<KWinFrontApplication>(bus); }},
            {"gnome"_L1, [&shell] { return std::make_unique<GnomeFrontApplication>(shell); }},
            {"x11"_L1, [] { return std::make_unique<X11FrontApplication>(); }}};
}
