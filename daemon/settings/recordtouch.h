// SPDX-License-Identifier: MIT
// The records that a difference touches, to decide whether it can be taken back although later changes have followed.
// Pure functions; any thread.
#pragma once

#include <QVariantMap>

#include <optional>

namespace RecordTouch {

/// `difference`, which led to an earlier document, for the document that `later` (a difference) has led to. The indexes
/// of the records follow their records. Absent if `later` touches a record that `difference` touches. References from
/// keys to macros and profiles are indexes: changing one touches the order of the records that it means.
[[nodiscard]] std::optional<QVariantMap> movedAcross(const QVariantMap &difference, const QVariantMap &later);

} // namespace RecordTouch
