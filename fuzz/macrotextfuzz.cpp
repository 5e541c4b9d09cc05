// SPDX-License-Identifier: MIT
// Texts of macros. Whatever a text contains, it is refused with a place in it, or it has a name and events that can be
// stored and that are the same after they have been written and read again.
#include "fuzz/target.h"
#include "macros/macrorecord.h"
#include "macros/macrotext.h"

namespace {

/// Whether the text has the line, and the line this column or the one behind its end.
void requirePlace(QByteArrayView text, const MacroText::ParseError &error)
{
    const auto lines = text.toByteArray().count('\n') + 1;
    require(error.line >= 1 && error.line <= lines, "an error is in a line of the text");
    const QByteArray line = text.toByteArray().split('\n').at(error.line - 1);
    require(error.column >= 1 && error.column <= line.size() + 1, "an error is in its line");
    require(!error.message.isEmpty(), "an error has a message");
}

void macrotext(QByteArrayView input)
{
    (void)MacroText::isMacroText(input);
    const auto content = MacroText::parse(input);
    if (!content)
        return requirePlace(input, content.error());
    const QVariantMap macro =
        MacroRecord::withEvents({{QStringLiteral("MacroName"), content->name.value_or(QString())}}, content->events);
    require(MacroRecord::isWellFormed(macro), "the macro of a text can be stored");
    const QString text = MacroText::nameLine(MacroRecord::name(macro)) + MacroText::write(content->events);
    const auto again = MacroText::parse(text.toUtf8());
    require(bool(again), "a written text can be read");
    require(again->name == MacroRecord::name(macro), "a name is read as it was written");
    require(MacroRecord::digest(again->events) == MacroRecord::digest(content->events),
            "events are read as they were written");
}

} // namespace

KESTRA_FUZZ_TARGET(macrotext)
