// SPDX-License-Identifier: MIT
// Reads and edits macro records: their sequence of events, and the display rows of the events. Pure functions without
// state; any thread may call them. A record's keys that are not named here stay unchanged.
#pragma once

#include "base/hidpages.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <limits>
#include <optional>

/// A macro's events are in record["sequence"] = {"Events": [event dictionary, ...]}; an empty dictionary means none.
///
/// eventParser::getMessagesArray makes the lines of the display rows. Every event but the first has a delay row, and
/// then an event row if it has an event line. The first event has only its event row, or nothing. Row numbers start at
/// 0. An operation that takes a row applies to the event of that row, whichever of its two rows it is.
namespace MacroRecord {

inline constexpr int maximumEvents = 10'000;      // in one macro
inline constexpr int maximumMacros = 256;         // two of the requests have 8 bits for the row of a macro
inline constexpr int maximumTotalEvents = 50'000; // in all macros: one message has the whole document
inline constexpr int standardDelayMs = 20;
inline constexpr int maximumDelayMs = std::numeric_limits<int>::max(); // what the requests can carry

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

/// Returns "MacroName"; empty if it is absent or not text.
[[nodiscard]] QString name(const QVariantMap &macro);
/// Returns "macroID" unchanged, for comparison; invalid if it is absent. In the daemon's document no two macros have
/// the same one.
[[nodiscard]] QVariant identity(const QVariantMap &macro);
/// Returns "macroID" as a number; 0 if it is absent or not a number.
[[nodiscard]] int macroId(const QVariantMap &macro);
/// Returns the index of the record in `macros` (the array "Macros") with this "macroID"; absent if there is none. The
/// daemon's numbers begin at 1, so no record has a smaller one, also not one whose "macroID" is absent.
[[nodiscard]] std::optional<int> indexOfMacroId(const QVariantList &macros, qint64 macroId);
/// Returns "delay", the pause before the first event of a recording; 0 if it is absent or not a number.
[[nodiscard]] int delayMs(const QVariantMap &macro);
/// Returns "sequence" unchanged, for comparison: macros with equal sequences have the same events. Invalid if absent.
[[nodiscard]] QVariant sequence(const QVariantMap &macro);
/// Returns the events of a macro record, in order; empty if it has none.
[[nodiscard]] QVariantList events(const QVariantMap &macro);
/// Returns `macro` with `events` in place of its own.
[[nodiscard]] QVariantMap withEvents(QVariantMap macro, const QVariantList &events);
/// Returns a digest of `events`: the SHA-256, as 64 lowercase hexadecimal digits, of PropertyList::writeBinary() of the
/// array. Events that differ in anything, such as in the type of a number, have different digests.
/// docs/daemon-protocol.md describes the bytes for other clients. Empty if a value has no property-list form.
[[nodiscard]] QString digest(const QVariantList &events);
/// Returns how many events the macro at `index` of `macros` (the array "Macros") may have: maximumEvents, or fewer if
/// the others leave fewer of maximumTotalEvents. Their number as `index` means a new macro, which may be one too many.
[[nodiscard]] int capacity(const QVariantList &macros, qsizetype index);
/// Returns why that macro cannot have `count` events, in English, for programs without texts; empty if it can.
[[nodiscard]] QString faultOfCount(const QVariantList &macros, qsizetype index, qsizetype count);
/// True if `event` can be stored: those of its four fields that exist are numbers.
[[nodiscard]] bool isWellFormedEvent(const QVariantMap &event);
/// True if `macro` can be stored: its name is text, its events are dictionaries of numbers, and there are no more than
/// allowed.
[[nodiscard]] bool isWellFormed(const QVariantMap &macro);

[[nodiscard]] int rowCount(const QVariantList &events);
/// Returns the index of the event that `row` belongs to; absent if there is no such row.
[[nodiscard]] std::optional<int> eventIndexOfRow(const QVariantList &events, int row);
/// Returns, for each row, the index of the event that it belongs to.
[[nodiscard]] QList<int> eventsOfRows(const QVariantList &events);

// Edits. Each returns the events afterwards; absent if there is no such row.
[[nodiscard]] std::optional<QVariantList> removingEventOfRow(const QVariantList &events, int row);
[[nodiscard]] std::optional<QVariantList> replacingEventOfRow(const QVariantList &events, int row,
                                                              const QVariantMap &event);
[[nodiscard]] std::optional<QVariantList> settingDelayOfRow(const QVariantList &events, int row, int delayMs);
[[nodiscard]] std::optional<QVariantList> copyingDelayOfRowToAll(const QVariantList &events, int row);
[[nodiscard]] QVariantList settingAllDelays(const QVariantList &events, int delayMs);

} // namespace MacroRecord
