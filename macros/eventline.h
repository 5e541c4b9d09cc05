// SPDX-License-Identifier: MIT
// The kinds of lines in the event list. The daemon delivers the lines; eventparser.h makes them. Any thread.
#pragma once

#include <QStringView>

#include <optional>

enum class EventLineKind { press, release, delay };

/// Returns the kind of a display line, with or without its newline. A line that is not one of the daemon's is a press.
[[nodiscard]] EventLineKind eventLineKind(QStringView line);

/// Returns the delay of a delay line in milliseconds. Absent for any other line and for a delay that is not a number.
[[nodiscard]] std::optional<int> delayMsOfLine(QStringView line);

/// Returns the name of the key or button in the line of a press or release: a part of `line`. Empty for a key without a
/// name, null for any other line.
[[nodiscard]] QStringView nameInEventLine(QStringView line);
