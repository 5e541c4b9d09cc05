// SPDX-License-Identifier: MIT
// How long a key takes from the keyboard to who reads it.
#pragma once

#include "tests/vm/driver/eventnode.h"
#include "tests/vm/driver/uhidkeyboard.h"

#include <chrono>
#include <vector>

/// One key after the other, 2 ms apart, from the moment before its report is written.
using Latencies = std::vector<std::chrono::nanoseconds>;

/// To the moment at which another process, which slept, has read it: as on a desktop.
[[nodiscard]] Latencies measureLatency(UhidKeyboard &keyboard, EventNode &node, int count);

/// To the moment at which the process that has written the report has read the key. It need not sleep, if the key is
/// there when the write ends.
[[nodiscard]] Latencies measureLatencyForWriter(UhidKeyboard &keyboard, EventNode &node, int count);
