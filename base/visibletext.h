// SPDX-License-Identifier: MIT
// Text from other people's files, keyboards and programs, made fit to be shown: names may hold characters that a
// terminal, a log or a label would obey instead of showing them. No state; any thread.
#pragma once

#include <QString>

/// `text` on one line, with `replacement` for each character that has no picture of its own: control characters, ends
/// of lines and paragraphs, and format characters such as those for the direction of text. The joiners and tags that
/// some scripts and flags are spelt with stay.
[[nodiscard]] QString visibleText(const QString &text, QChar replacement);

/// The JSON text `json` with the same characters escaped ("\u202e"); it has the same meaning. Its own ends of lines
/// stay.
[[nodiscard]] QString visibleJson(const QString &json);
