// SPDX-License-Identifier: MIT
// New events, and edits of several events of a macro at once, by the index of the event. Pure functions without state;
// any thread.
#pragma once

#include "base/hidusage.h"

#include <QList>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

/// Events are event dictionaries (macrorecord.h). A pause has no event of its own: it is the delay of the event after
/// it, and it goes where that event goes. It is removed with it, moved with it and copied with it, just as when one
/// event of the list is deleted. A pause after the last event has no such event; an event without key and button, which
/// the list shows as a delay alone, carries it. It lengthens each round of a repeated macro.
namespace MacroEdits {

// New events. `delayMs` is the pause before the (first) event; `holdMs` that before the release.
[[nodiscard]] QVariantMap press(HidUsage key, int delayMs = 0);
[[nodiscard]] QVariantMap release(HidUsage key, int delayMs = 0);
/// A press and its release.
[[nodiscard]] QVariantList tap(HidUsage key, int delayMs = 0, int holdMs = 0);
/// A tap of a mouse button; 1 is the left one.
[[nodiscard]] QVariantList click(int button, int delayMs = 0, int holdMs = 0);
/// An event that only waits.
[[nodiscard]] QVariantMap pause(int delayMs);
/// Whether `event` is such an event and nothing more.
[[nodiscard]] bool isPause(const QVariantMap &event);

// Edits. Each returns the events afterwards. `indexes` may have any order, and count once if they repeat. Absent if an
// index does not exist, a pause is out of 0 to MacroRecord::maximumDelayMs, or the events would be more than
// MacroRecord::maximumEvents.

/// Inserts `inserted` before the event at `index`; the number of events means at the end.
[[nodiscard]] std::optional<QVariantList> inserting(const QVariantList &events, int index,
                                                    const QVariantList &inserted);
/// Adds a pause before the event at `index`, to the one that is there. At the end it adds pause().
[[nodiscard]] std::optional<QVariantList> insertingPause(const QVariantList &events, int index, int delayMs);
[[nodiscard]] std::optional<QVariantList> removing(const QVariantList &events, const QList<int> &indexes);
/// Moves the events, which keep their order and become neighbours, before the event that is now at `before`; the number
/// of events means to the end.
[[nodiscard]] std::optional<QVariantList> moving(const QVariantList &events, const QList<int> &indexes, int before);
[[nodiscard]] std::optional<QVariantList> settingDelays(const QVariantList &events, const QList<int> &indexes,
                                                        int delayMs);
/// Multiplies the pauses by `factor`, from 0 on, and rounds them to milliseconds. The longest possible pause takes the
/// place of a longer one, and no pause that of a negative one.
[[nodiscard]] std::optional<QVariantList> scalingDelays(const QVariantList &events, const QList<int> &indexes,
                                                        double factor);
/// The events at `indexes`, in their order, for inserting() into this macro or another one.
[[nodiscard]] std::optional<QVariantList> copied(const QVariantList &events, const QList<int> &indexes);

} // namespace MacroEdits
