// SPDX-License-Identifier: MIT
// What a line of the event list stands for. The daemon delivers the lines; eventparser.h makes them. Any thread.
#pragma once

#include <QString>

enum class EventLineKind { press, release, delay };

/// The kind of a display line, with or without its newline. A line that is none of the daemon's counts as a press.
[[nodiscard]] EventLineKind eventLineKind(const QString &line);
