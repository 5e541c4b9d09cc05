// SPDX-License-Identifier: MIT
// The steps of a scenario that concern the system around the daemon: udev, suspending, programs, clients, ends.
#pragma once

#include "tests/vm/driver/machine.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

using StepAction = std::function<void(Machine &, const std::vector<std::string> &)>;

/// Keyed by the first word of a step.
[[nodiscard]] const std::map<std::string, StepAction> &systemActions();
