// SPDX-License-Identifier: MIT
// Distinguishes one profile from every other while something about it is open. A profile record has no identifier, and
// its row moves when another one is deleted. A pure function; any thread.
#pragma once

#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

/// Returns the identity of `profile`, the record at `row` of `profiles` (array of profile records). It equals an
/// earlier one only if this is still the same profile with the same contents, apart from its lighting. Profiles with
/// the same contents differ only by their rows.
[[nodiscard]] QVariant profileIdentity(const QVariantMap &profile, const QVariantList &profiles, int row);
