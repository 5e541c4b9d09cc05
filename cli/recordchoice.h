// SPDX-License-Identifier: MIT
// Which profile or macro a word of the command line means. No state; any thread.
#pragma once

#include "cli/recordkind.h"

#include <QString>
#include <QVariantList>

#include <optional>

/// The number that `text` means: a number is taken as it is, whether there is such a record or not; a name must be
/// borne by exactly one of `records`. Absent with `problem` set otherwise.
[[nodiscard]] std::optional<int> recordNumber(const QString &text, const QVariantList &records, const RecordKind &kind,
                                              QString &problem);

/// As recordNumber(), and a record with that number must be there.
[[nodiscard]] std::optional<int> existingRecordNumber(const QString &text, const QVariantList &records,
                                                      const RecordKind &kind, QString &problem);
