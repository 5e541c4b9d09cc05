// SPDX-License-Identifier: MIT
// New events that a user adds to a macro, and where they end up in the event list. Pure values without other state; any
// thread.
#pragma once

#include "base/hidusage.h"
#include "base/result.h"
#include "macros/macrorecord.h"

#include <QList>
#include <QVariantList>

struct MacroInsertion
{
    enum class Kind { press, release, tap, click, pause };
    enum class Problem {
        tooManyEvents, ///< more than the macro may have
        pauseTooLong,  ///< a pause is added to the one that is there
    };

    struct Outcome
    {
        QVariantList events;       ///< all of the macro (event dictionaries)
        QList<int> rows;           ///< the new rows of the event list, ascending; of a single event, the row of its key
        bool addsUnpaired = false; ///< more presses than before have no release, or the reverse
        bool operator==(const Outcome &) const = default;
    };

    Kind kind = Kind::tap;
    HidUsage key;    ///< key or mouse button; not used by a pause
    int pauseMs = 0; ///< before the first new event, or the pause itself
    int holdMs = 0;  ///< between the press and the release of a tap or a click

    [[nodiscard]] bool hasHold() const { return kind == Kind::tap || kind == Kind::click; }
    /// Inserts before the event at `place`; the number of events means at the end. `capacity`: how many events the
    /// macro may have, as MacroRecord::capacity(). A pause makes the delay of that event longer. The list has no row
    /// for the delay of the first event: a pause before it becomes the delay of a second one, behind an event that does
    /// nothing.
    [[nodiscard]] Result<Outcome, Problem> into(const QVariantList &events, int place,
                                                int capacity = MacroRecord::maximumEvents) const;
};
