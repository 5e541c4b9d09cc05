// SPDX-License-Identifier: MIT
// The profile or macro that a command line means, among those that the daemon holds. No state; main thread.
#pragma once

#include "cli/commandtable.h"
#include "cli/recordkind.h"

#include <QVariantList>
#include <QVariantMap>

/// A record that exists, with all records of its kind and the document that holds them.
struct ChosenRecord
{
    const RecordKind *kind = nullptr; ///< never null
    QVariantMap document;
    QVariantList records;
    int index = 0; ///< in `records`

    [[nodiscard]] QVariantMap record() const { return records.at(index).toMap(); }
    [[nodiscard]] QString words() const; ///< as recordWords()
    /// `name`, or `name` with a number when another of the records has it.
    [[nodiscard]] QString freeName(const QString &name) const;
};

/// The record that the first argument names.
[[nodiscard]] CommandResult<ChosenRecord> chooseRecord(CommandContext &context, const RecordKind &kind);

/// 'macro 2 "Combo"' for the record with the index 1; without the name where `record` has none.
[[nodiscard]] QString recordWords(const RecordKind &kind, int index, const QVariantMap &record);
