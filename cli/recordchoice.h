// SPDX-License-Identifier: MIT
// Which profile or macro a word of the command line means. No state; any thread.
#pragma once

#include "base/result.h"
#include "cli/recordkind.h"

#include <QString>
#include <QVariantList>

/// The index in `records` of the record that `text` means. A text of digits is a number, counted from 1. Any other text
/// is a name, also with "name:" before it ("name:2" is the record called "2"). A name in its exact letters precedes
/// those in another letter case. An error when no record, or more than one, is meant.
[[nodiscard]] Result<int> recordIndex(const QString &text, const QVariantList &records, const RecordKind &kind);

/// `name` as recordIndex() takes it: with "name:" where it would mean something else without.
[[nodiscard]] QString nameArgument(const QString &name);
