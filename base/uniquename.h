// SPDX-License-Identifier: MIT
// The rule by which a new macro or profile is named. No state; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QVariantList>

/// A name made from `base` for a new member of the list that has `names`: `base` itself, or "base(n)".
///
/// n is not the number of the first free slot. The search starts at `base`, and n is one more than all hits met on the
/// way: with "A" and "A(2)" taken the answer is "A(3)", but with "A" twice it is "A(3)" too, and with "A" and "A(3)" it
/// is "A(2)". Deliberate: higher suffixes count only when the chain reaches them. Case matters.
[[nodiscard]] QString uniqueName(const QStringList &names, const QString &base);

/// The same for `records`, an array of dictionaries that have their names under `nameKey`. A record without a name, or
/// with a name that is not text, takes no name.
[[nodiscard]] QString uniqueName(const QVariantList &records, QLatin1StringView nameKey, const QString &base);
