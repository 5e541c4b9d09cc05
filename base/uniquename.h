// SPDX-License-Identifier: MIT
// The rule for the name of a new macro or profile. No state; any thread.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QVariantList>

/// Returns a name made from `base` for a new member of the list that has `names`: `base` itself, or "base(n)".
///
/// n is not the number of the first free slot. The search starts at `base`, and n is one more than all hits on the way.
/// With "A" and "A(2)" taken the result is "A(3)". With "A" twice it is also "A(3)", and with "A" and "A(3)" it is
/// "A(2)". Deliberate: higher suffixes matter only when the chain reaches them. Upper and lower case differ.
[[nodiscard]] QString uniqueName(const QStringList &names, const QString &base);

/// Does the same for `records`, an array of dictionaries that have their names under `nameKey`. A record without a
/// name, or with a name that is not text, takes no name.
[[nodiscard]] QString uniqueName(const QVariantList &records, QLatin1StringView nameKey, const QString &base);
