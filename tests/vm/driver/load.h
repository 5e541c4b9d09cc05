// SPDX-License-Identifier: MIT
// High rates of reports: floods and storms.
#pragma once

#include "tests/vm/driver/machine.h"

#include <string>
#include <vector>

/// Presses and releases a key at `rate` reports a second, by the machine's clock and without the time that the driver
/// itself takes. Throws Failure unless the desktop sees each report, in order and at this rate.
void flood(Machine &machine, const std::string &keyboard, int rate, int seconds);

/// Sends random reports on the keyboards, and releases all keys at the end. Throws Failure when a key stays down, or
/// comes up without having been down.
void storm(Machine &machine, const std::vector<std::string> &keyboards, unsigned seed, int reports);
