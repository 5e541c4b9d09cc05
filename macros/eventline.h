// SPDX-License-Identifier: MIT
// The kinds of lines in the event list. The daemon delivers the lines; eventparser.h makes them. Any thread.
#pragma once

#include <QString>

enum class EventLineKind { press, release, delay };

/// Returns the kind of a display line, with or without its newline. A line that is not one of the daemon's is a press.
[[nodiscard]] EventLineKind eventLineKind(const QString &line);
