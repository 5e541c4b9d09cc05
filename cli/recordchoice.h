// SPDX-License-Identifier: MIT
// Which profile or macro a word of the command line means. No state; any thread.
#pragma once

#include "base/result.h"
#include "cli/recordkind.h"

#include <QString>
#include <QVariantList>

/// The number that `text` means. A number is taken unchanged, whether such a record exists or not; a name must belong
/// to exactly one of `records`.
[[nodiscard]] Result<int> recordNumber(const QString &text, const QVariantList &records, const RecordKind &kind);

/// As recordNumber(), but a record with that number must exist.
[[nodiscard]] Result<int> existingRecordNumber(const QString &text, const QVariantList &records,
                                               const RecordKind &kind);
