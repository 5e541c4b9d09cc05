// SPDX-License-Identifier: MIT
// Waiting for a person or for time to pass. Main thread.
#pragma once

#include <QEventLoop>

#include <chrono>
#include <optional>

/// Reads the seconds that "--seconds" gives: above 0, at most a day. Absent when `text` means none.
[[nodiscard]] std::optional<std::chrono::milliseconds> secondsOf(const QString &text);

/// Runs `loop` for `duration` or, without one, until a line or the end of the standard input. Quitting the loop and
/// SIGINT, SIGTERM and SIGHUP end it as well: the caller can then finish its work.
void runUntilEnded(QEventLoop &loop, std::optional<std::chrono::milliseconds> duration);
