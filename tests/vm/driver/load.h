// SPDX-License-Identifier: MIT
// Many reports, fast: floods and storms.
#pragma once

#include "tests/vm/driver/machine.h"

#include <string>
#include <vector>

/// A key that goes down and up, `rate` reports a second. Throws Failure unless the desktop sees each, in order.
void flood(Machine &machine, const std::string &keyboard, int rate, int seconds);

/// Random reports on the keyboards, then none of them has a key down. Throws Failure when a key stays down, or comes up
/// without having been down.
void storm(Machine &machine, const std::vector<std::string> &keyboards, unsigned seed, int reports);
