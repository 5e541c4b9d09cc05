// SPDX-License-Identifier: MIT
// Parts of the lines that several commands print. No state; any thread.
#pragma once

#include <QString>
#include <QVariantList>

class Console;

/// A line of a list: the number of the record or row with `index`, counted from 1, and `text`.
[[nodiscard]] QString numberedLine(int index, const QString &text);

/// "1 event", "4 events".
[[nodiscard]] QString eventCount(qsizetype count);

/// "press without release: row 3; release without press: rows 5, 8", with the rows as "macro show" counts them. Empty
/// if `events` (event dictionaries) have neither.
[[nodiscard]] QString unpairedWords(const QVariantList &events);

/// Prints `line` and then, if there are any, the unpairedWords() of the stored `events`.
void printStored(Console &console, const QString &line, const QVariantList &events);
