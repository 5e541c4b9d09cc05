// SPDX-License-Identifier: MIT
// The time that a key takes from the keyboard to its reader.
#pragma once

#include "tests/vm/driver/eventnode.h"
#include "tests/vm/driver/uhidkeyboard.h"

#include <chrono>
#include <vector>

/// One value per key. Keys are 2 ms apart; each time begins just before the report is written.
using Latencies = std::vector<std::chrono::nanoseconds>;

/// Measures until another process, which slept, has read the key, as on a desktop.
[[nodiscard]] Latencies measureLatency(UhidKeyboard &keyboard, EventNode &node, int count);

/// Measures until the process that wrote the report has read the key. It need not sleep if the key is there when the
/// write ends.
[[nodiscard]] Latencies measureLatencyForWriter(UhidKeyboard &keyboard, EventNode &node, int count);
