// SPDX-License-Identifier: MIT
// The kinds of lines in the event list. The daemon delivers the lines; eventparser.h makes them. Any thread.
#pragma once

#include <QString>

#include <optional>

enum class EventLineKind { press, release, delay };

/// Returns the kind of a display line, with or without its newline. A line that is not one of the daemon's is a press.
[[nodiscard]] EventLineKind eventLineKind(const QString &line);

/// Returns the delay of a delay line in milliseconds. Absent for any other line and for a delay that is not a number.
[[nodiscard]] std::optional<int> delayMsOfLine(const QString &line);
