// SPDX-License-Identifier: MIT
// Reads and edits macro records: their sequence of events, and the display rows that stand for the events. Pure
// functions without state; any thread may call them. A record's keys that are not named here are kept as they are.
#pragma once

#include "base/hidpages.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

/// A macro's events stand in record["sequence"] = {"Events": [event dictionary, ...]}; an empty dictionary means none.
///
/// Display rows (eventParser::getMessagesArray makes their lines): every event but the first has a delay row, and then
/// an event row if it has an event line; the first event has its event row alone, or nothing. Rows count from 0. An
/// operation that takes a row means the event that the row belongs to, whichever of its two rows it is.
namespace MacroRecord {

inline constexpr int maximumEvents = 10'000;      // in one macro
inline constexpr int maximumMacros = 256;         // rows of a macro travel in 8 bits in two of the requests
inline constexpr int maximumTotalEvents = 50'000; // in all macros: the whole document travels in one message
inline constexpr int standardDelayMs = 20;

inline constexpr int keyDown = 1; // "command" of an event
inline constexpr int keyUp = 0;
inline constexpr int keyboardPage = HidPages::keyboard; // "page" of an event
inline constexpr int buttonPage = HidPages::button;

/// One event. `argument` is a key code (page 7) or a button number from 1 (page 9); `delayMs` is the pause before it.
struct Event
{
    int command = keyUp;
    int delayMs = 0;
    int page = keyboardPage;
    uint argument = 0;
};

[[nodiscard]] Event eventFields(const QVariantMap &event); ///< absent keys read as 0
[[nodiscard]] QVariantMap eventRecord(const Event &event);

/// "MacroName"; empty when it has none that is text.
[[nodiscard]] QString name(const QVariantMap &macro);
/// The events of a macro record, in order; empty when it has none.
[[nodiscard]] QVariantList events(const QVariantMap &macro);
/// `macro` with `events` in the place of its own.
[[nodiscard]] QVariantMap withEvents(QVariantMap macro, const QVariantList &events);
/// Whether `event` can be stored: those of its four fields that are there are numbers.
[[nodiscard]] bool isWellFormedEvent(const QVariantMap &event);
/// Whether `macro` can be stored: a name that is text, events that are dictionaries of numbers, no more than allowed.
[[nodiscard]] bool isWellFormed(const QVariantMap &macro);

[[nodiscard]] int rowCount(const QVariantList &events);
/// The event that `row` belongs to; absent when there is no such row.
[[nodiscard]] std::optional<int> eventIndexOfRow(const QVariantList &events, int row);

// Edits; each returns the events afterwards, absent when there is no such row.
[[nodiscard]] std::optional<QVariantList> removingEventOfRow(const QVariantList &events, int row);
[[nodiscard]] std::optional<QVariantList> replacingEventOfRow(const QVariantList &events, int row,
                                                              const QVariantMap &event);
[[nodiscard]] std::optional<QVariantList> settingDelayOfRow(const QVariantList &events, int row, int delayMs);
[[nodiscard]] std::optional<QVariantList> copyingDelayOfRowToAll(const QVariantList &events, int row);
[[nodiscard]] QVariantList settingAllDelays(const QVariantList &events, int delayMs);

} // namespace MacroRecord
