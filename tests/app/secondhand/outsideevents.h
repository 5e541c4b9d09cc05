// SPDX-License-Identifier: MIT
// What happens in the middle of an operation without the person, as a table. Values; the test's thread.
#pragma once

#include "tests/app/secondhand/scene.h"

#include <functional>
#include <vector>

/// What an event does to the window besides bringing new settings.
enum class Disturbance {
    none,      ///< it brings nothing at all
    settings,  ///< only new settings
    unplugged, ///< the keyboard goes, and stays away until the operation is over
    unpluggedBriefly,
    restarted,  ///< the daemon ends and starts again
    daemonEnded ///< the daemon ends, and starts again only when the operation is over
};

struct OutsideEvent
{
    const char *name;
    Disturbance disturbance;
    std::function<void(Scene &)> happen; ///< enters what it changes into the ledger
};

[[nodiscard]] const std::vector<OutsideEvent> &outsideEvents();
