// SPDX-License-Identifier: MIT
#include "cli/chosenrecord.h"

#include "base/uniquename.h"
#include "cli/recordchoice.h"

using namespace Qt::StringLiterals;

QString recordWords(const RecordKind &kind, int number, const QVariantMap &record)
{
    const QString words = u"%1 %2"_s.arg(kind.word).arg(number);
    const QVariant name = record.value(kind.nameKey);
    return name.isValid() ? words + u" \"%1\""_s.arg(name.toString()) : words;
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

CommandResult<ChosenRecord> chooseRecord(CommandContext &context, const RecordKind &kind)
{
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    const QVariantList records = (Document(*document).*kind.records)();
    const Result<int> number = existingRecordNumber(context.arguments.first(), records, kind);
    if (!number)
        return wrongUsage(number.error().message);
    return ChosenRecord{.kind = &kind, .document = *document, .records = records, .number = *number};
}
