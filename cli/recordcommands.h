// SPDX-License-Identifier: MIT
// Commands, and steps of commands, that are the same for profiles and for macros. No state; main thread.
#pragma once

#include "cli/chosenrecord.h"

#include <QJsonObject>

/// How a list shows one record, to a user and to a program.
struct RecordRow
{
    QString line;
    QJsonObject object;
};

/// "list": prints all records of `kind`, each as `rowOf` gives it.
CommandResult<void> listRecords(CommandContext &context, const RecordKind &kind,
                                RecordRow (*rowOf)(const QVariantMap &document, int index, const QVariantMap &record));

/// "delete": deletes the record that the first argument names and repairs the keys that named it. Then prints the line
/// that `noteOf` makes of the deleted record, if that is not empty.
CommandResult<void> deleteRecord(CommandContext &context, const RecordKind &kind,
                                 QString (*noteOf)(const ChosenRecord &deleted) = nullptr);

/// "export": writes `contents` as the file of `chosen`, to the path that the second argument gives.
CommandResult<void> exportRecord(CommandContext &context, const ChosenRecord &chosen, const QVariantMap &contents);

/// The record of the file that the first argument names.
[[nodiscard]] CommandResult<QVariantMap> readRecordFile(CommandContext &context, const RecordKind &kind);
/// The record to rename, by the first argument. The second argument must give it a name.
[[nodiscard]] CommandResult<ChosenRecord> chooseRecordToRename(CommandContext &context, const RecordKind &kind);

/// For a name without characters.
[[nodiscard]] CommandError missingName(const RecordKind &kind);
