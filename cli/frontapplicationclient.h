// SPDX-License-Identifier: MIT
// The daemon's knowledge of the application in front, over the session bus.
#pragma once

#include "base/frontapplicationkeys.h"
#include "cli/daemonobjectclient.h"

/// org.quillkestra.FrontApplication; docs/daemon-protocol.md documents its methods and properties.
inline constexpr DaemonObjectClient frontApplicationObject{
    .path = FrontApplicationKeys::objectPath,
    .interface = FrontApplicationKeys::interfaceName,
    .words = QLatin1StringView("switching by the application in front")};
