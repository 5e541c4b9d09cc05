// SPDX-License-Identifier: MIT
// A storm of random inputs on a real input stack, compared with the reference model.
#pragma once

#include "tests/vm/driver/machine.h"

/// Plugs in two keyboards, adds profiles and macros, and sends `events` random inputs: keys, switches of the profile by
/// keys, clients and applications, captures, dropped events, unplugging, the release chord. Throws Failure when other
/// keys are down at the computer than those of the model. The daemon must run.
void modelStorm(Machine &machine, unsigned seed, int events);
