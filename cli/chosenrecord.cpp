// SPDX-License-Identifier: MIT
#include "cli/chosenrecord.h"

#include "base/uniquename.h"
#include "cli/recordchoice.h"

using namespace Qt::StringLiterals;

QString recordWords(const RecordKind &kind, int number, const QVariantMap &record)
{
    return u"%1 %2 \"%3\""_s.arg(kind.word).arg(number).arg(record.value(kind.nameKey).toString());
}

QString ChosenRecord::words() const
{
    return recordWords(*kind, number, record());
}

QString ChosenRecord::freeName(const QString &name) const
{
    QVariantList others = records;
    others.removeAt(number);
    return uniqueName(others, kind->nameKey, name);
}

std::optional<ChosenRecord> chooseRecord(CommandContext &context, const RecordKind &kind, ExitCode &failure)
{
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok()) {
        failure = context.console.fail(document.failure, document.reason);
        return {};
    }
    const QVariantList records = document.reply.value(kind.listKey).toList();
    QString problem;
    const auto number = existingRecordNumber(context.arguments.first(), records, kind, problem);
    if (!number) {
        failure = context.console.fail(ExitCode::usage, problem);
        return {};
    }
    return ChosenRecord{.kind = &kind, .document = document.reply, .records = records, .number = *number};
}
