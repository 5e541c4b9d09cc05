// SPDX-License-Identifier: MIT
// Parts of the lines that several commands print. No state; any thread.
#pragma once

#include <QString>

/// A line of a list: the number of the record or row with `index`, counted from 1, and `text`.
[[nodiscard]] QString numberedLine(int index, const QString &text);

/// "1 event", "4 events".
[[nodiscard]] QString eventCount(qsizetype count);
