// SPDX-License-Identifier: MIT
// Makes text from other people's files, keyboards and programs fit to be shown. Names may have characters that a
// terminal, a log or a label would obey instead of showing them. No state; any thread.
#pragma once

#include <QString>

/// Returns `text` on one line, with `replacement` for each character without a picture of its own. These are control
/// characters, ends of lines and paragraphs, and format characters such as those for the direction of text. The joiners
/// and tags in the spelling of some scripts and flags stay.
[[nodiscard]] QString visibleText(const QString &text, QChar replacement);

/// Returns the JSON text `json` with the same characters escaped ("\u202e"); its meaning is unchanged. Its own ends of
/// lines stay.
[[nodiscard]] QString visibleJson(const QString &json);
