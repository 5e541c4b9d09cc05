// SPDX-License-Identifier: MIT
// The difference between two settings documents, as a property list that can be stored, and its application in both
// directions. Pure functions; any thread.
//
// A difference is a dictionary from each changed key to its change, which is a dictionary with one of these forms:
//   {"o": value, "n": value}   the old and the new value; without "o" the key is new, without "n" it is removed
//   {"d": difference}          a dictionary that has changed inside
//   {"l": [step, ...]}         an array that has changed inside, in ascending order of the indexes. A step is
//     {"i": index before, "j": index after, "c": change}                       of one element, or
//     {"i": index before, "j": index after, "o": [removed], "n": [inserted]}
// Profiles and macros are matched by their identity (name and "macroID"): a deleted record is one step.
#pragma once

#include <QVariantMap>

#include <optional>

namespace DocumentDifference {

enum class Direction { forward, back };

/// Whether both have the same types and values; 1, true and 1.0 differ.
[[nodiscard]] bool areIdentical(const QVariant &a, const QVariant &b);

/// The difference that leads from `before` to `after`; empty if there is none. It never has "LastMacroID", which must
/// not go back: no macro ever gets the number of a deleted one.
[[nodiscard]] QVariantMap between(const QVariantMap &before, const QVariantMap &after);

/// `document` with `difference` applied in `direction`. Absent if the document does not have the values that the
/// difference changes: nothing is ever applied to a document that it does not fit.
[[nodiscard]] std::optional<QVariantMap> applied(const QVariantMap &document, const QVariantMap &difference,
                                                 Direction direction);

/// The reverse: applied forward, it has the effect of `difference` applied back.
[[nodiscard]] QVariantMap reversed(const QVariantMap &difference);

} // namespace DocumentDifference
