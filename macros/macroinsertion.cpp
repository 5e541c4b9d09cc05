// SPDX-License-Identifier: MIT
#include "macros/macroinsertion.h"

#include "macros/macroedits.h"
#include "macros/macropairs.h"

namespace {

QVariantList newEvents(const MacroInsertion &insertion)
{
    using Kind = MacroInsertion::Kind;
    switch (insertion.kind) {
    case Kind::press: return {MacroEdits::press(insertion.key, insertion.pauseMs)};
    case Kind::release: return {MacroEdits::release(insertion.key, insertion.pauseMs)};
    case Kind::tap:
    case Kind::click: return MacroEdits::tap(insertion.key, insertion.pauseMs, insertion.holdMs);
    case Kind::pause: break;
    }
    return {};
}

/// The rows of `count` events from the one at `first` on.
QList<int> rowsOf(const QVariantList &events, int first, int count)
{
    QList<int> rows;
    const QList<int> eventsOfRows = MacroRecord::eventsOfRows(events);
    for (int row = 0; row < eventsOfRows.size(); ++row) {
        if (eventsOfRows.at(row) >= first && eventsOfRows.at(row) < first + count)
            rows += row;
    }
    return rows;
}

Result<MacroInsertion::Outcome, MacroInsertion::Problem> withPause(const QVariantList &events, int place, int delayMs,
                                                                   int capacity)
{
    using Problem = MacroInsertion::Problem;
    const bool isFirst = place == 0;
    const int added = (isFirst ? 1 : 0) + (place == events.size() ? 1 : 0);
    if (added > 0 && events.size() + added > capacity)
        return Problem::tooManyEvents;
    std::optional<QVariantList> changed = MacroEdits::insertingPause(events, place, delayMs);
    if (!changed)
        return Problem::pauseTooLong;
    if (isFirst)
        changed->prepend(MacroEdits::pause(0));
    return MacroInsertion::Outcome{.events = *changed, .rows = rowsOf(*changed, isFirst ? 1 : place, 1).first(1)};
}

} // namespace

Result<MacroInsertion::Outcome, MacroInsertion::Problem> MacroInsertion::into(const QVariantList &events, int place,
                                                                              int capacity) const
{
    if (kind == Kind::pause)
        return withPause(events, place, pauseMs, capacity);
    const QVariantList added = newEvents(*this);
    const std::optional<QVariantList> changed = MacroEdits::inserting(events, place, added);
    if (!changed || changed->size() > capacity)
        return Problem::tooManyEvents;
    const QList<int> rows = rowsOf(*changed, place, static_cast<int>(added.size()));
    return Outcome{.events = *changed,
                   .rows = added.size() == 1 ? rows.last(1) : rows,
                   .addsUnpaired = MacroPairs::of(*changed).unpaired.size() > MacroPairs::of(events).unpaired.size()};
}
