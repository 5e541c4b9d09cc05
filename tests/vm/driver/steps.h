// SPDX-License-Identifier: MIT
// What the words of a scenario's steps do.
#pragma once

#include "tests/vm/driver/machine.h"

#include <string>
#include <vector>

/// Throws Failure when the step cannot be done, is unknown, or what it expects does not hold.
void doStep(Machine &machine, const std::vector<std::string> &words);
