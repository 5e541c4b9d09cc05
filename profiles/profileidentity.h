// SPDX-License-Identifier: MIT
// What tells one profile from every other while something about it is open. A profile record has no number of its own,
// and its row moves when another one is deleted. A pure function; any thread.
#pragma once

#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

/// The identity of `profile`, the record at `row` of `profiles` (array of profile records): equal to an earlier one
/// exactly when this is still the same profile with the same contents, whatever its light is now. Of profiles with the
/// same contents each is told by its row, as nothing else can.
[[nodiscard]] QVariant profileIdentity(const QVariantMap &profile, const QVariantList &profiles, int row);
