// SPDX-License-Identifier: MIT
// Commands, and steps of commands, that are the same for profiles and for macros. No state; main thread.
#pragma once

#include "cli/chosenrecord.h"

#include <QJsonObject>

/// How a list shows one record: to a person, and to a program.
struct RecordRow
{
    QString line;
    QJsonObject object;
};

/// "list": prints all records of `kind`, each as `rowOf` gives it.
ExitCode listRecords(CommandContext &context, const RecordKind &kind,
                     RecordRow (*rowOf)(const QVariantMap &document, int number, const QVariantMap &record));

/// "delete": deletes the record that the first argument names and repairs the keys that named it.
ExitCode deleteRecord(CommandContext &context, const RecordKind &kind);

/// "export": writes `contents` as the file of `chosen`, to the path that the second argument gives.
ExitCode exportRecord(CommandContext &context, const ChosenRecord &chosen, const QVariantMap &contents);

// Each is absent when it fails: `failure` is then the exit code, and the console has printed the reason.

/// The record of the file that the first argument names.
[[nodiscard]] std::optional<QVariantMap> readRecordFile(CommandContext &context, const RecordKind &kind,
                                                        ExitCode &failure);
/// The record to rename, by the first argument. The second argument must give it a name.
[[nodiscard]] std::optional<ChosenRecord> chooseRecordToRename(CommandContext &context, const RecordKind &kind,
                                                               ExitCode &failure);

/// Refuses a name without characters.
ExitCode failWithoutName(CommandContext &context, const RecordKind &kind);
