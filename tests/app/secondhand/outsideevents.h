// SPDX-License-Identifier: MIT
// The table of events that happen in the middle of an operation. Values; used on the test's thread.
#pragma once

#include "tests/app/secondhand/scene.h"

#include <functional>
#include <vector>

/// How an event reaches the window.
enum class Disturbance {
    none,             ///< not at all
    settings,         ///< as new settings
    unplugged,        ///< the keyboard is removed, and attached after the operation
    unpluggedBriefly, ///< the keyboard is removed and attached
    restarted,        ///< the daemon ends and starts again
    daemonEnded,      ///< the daemon ends, and starts again after the operation
    fileOpened        ///< the question about a file comes after the operation
};

struct OutsideEvent
{
    const char *name;
    Disturbance disturbance;
    std::function<void(Scene &)> happen; ///< also enters the change into the ledger
};

[[nodiscard]] const std::vector<OutsideEvent> &outsideEvents();
