// SPDX-License-Identifier: MIT
// The readable text of a macro, for an editor: one line for each step. docs/macro-text.md has its grammar. Names of
// keys are those of keys/keynames.h, in every language. Pure functions; any thread.
#pragma once

#include "base/result.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <optional>

namespace MacroText {

struct Content
{
    std::optional<QString> name; ///< of the macro, if the text has it
    QVariantList events;
};

/// Where a text is wrong. The message has the line and the column as well.
struct ParseError : Error
{
    int line = 0;   ///< from 1
    int column = 0; ///< from 1, in characters
};

/// Returns the macro that `text` (UTF-8) describes. At most MacroRecord::maximumEvents events, each of which can be
/// stored.
[[nodiscard]] Result<Content, ParseError> parse(QByteArrayView text);

/// Returns the text of `events`, which parse() reads back with the same values of the same types. `events` are event
/// dictionaries that can be stored. Each line ends with a newline.
[[nodiscard]] QString write(const QVariantList &events);

/// Returns the line that gives the macro its name.
[[nodiscard]] QString nameLine(const QString &name);

/// Whether `text` is meant as the text of a macro, perhaps with mistakes: its first line that is neither empty nor a
/// comment begins with a word of the grammar, or it is another text in UTF-8 that does not begin as a property list.
[[nodiscard]] bool isMacroText(QByteArrayView text);

} // namespace MacroText
