// SPDX-License-Identifier: MIT
// Turns a text into the events of a macro that types it. Pure functions; any thread, except where noted.
#pragma once

#include "macros/macrorecord.h"

#include <QList>
#include <QString>

class TypingTable;

/// A character that the layout cannot type.
struct UntypedCharacter
{
    char32_t character = 0;
    qsizetype position = 0; ///< counts the text's characters from 1; a surrogate pair is one character

    bool operator==(const UntypedCharacter &) const = default;
};

/// The outcome of typeText(). `events` is empty if the text has a character that cannot be typed, or if it needs more
/// than MacroRecord::maximumEvents events.
struct TypedText
{
    QList<MacroRecord::Event> events;
    qsizetype eventCount = 0;        ///< that the text needs; without the characters that cannot be typed
    QList<UntypedCharacter> untyped; ///< in the order of the text
};

/// Every press of a key waits `pauseMs` milliseconds after the key before; the first one does not wait. Modifiers that
/// a character needs are pressed before its key, and released before the next key that does not need them. At the end
/// all keys are up. A line end ("\n", "\r\n" or "\r") is one press of Return.
///
/// A character with combining marks is typed in its composed form. If the layout cannot, its marks are typed one by
/// one. Therefore the text that arrives is canonically equivalent to `text`, but it may have other code points.
[[nodiscard]] TypedText typeText(const QString &text, const TypingTable &table, int pauseMs);

/// Returns the events of a macro (event dictionaries) with `typed` before the one at `index`; their number means at the
/// end. `pauseMs` separates `typed` from the events before it. It also comes before the event that was the first one,
/// if that has no delay.
[[nodiscard]] QVariantList insertingTyped(const QVariantList &events, qsizetype index,
                                          const QList<MacroRecord::Event> &typed, int pauseMs);

/// Returns the names of the modifier keys that `events` (event dictionaries) hold down before the one at `index`: a
/// text that is typed there may arrive as other characters. Main thread only.
[[nodiscard]] QStringList modifiersHeldBefore(const QVariantList &events, qsizetype index);

/// The character for a message: "€ (U+20AC)", or its number alone if it has no picture of its own.
[[nodiscard]] QString shownCharacter(char32_t character);
