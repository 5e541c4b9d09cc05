// SPDX-License-Identifier: MIT
// Runs the steps of a scenario.
#pragma once

#include "tests/vm/driver/machine.h"

#include <string>
#include <vector>

/// Throws Failure when the step is unknown, cannot be done, or its expectation is not met.
void doStep(Machine &machine, const std::vector<std::string> &words);
