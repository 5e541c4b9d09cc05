// SPDX-License-Identifier: MIT
#include "cli/chosenrecord.h"

#include "base/uniquename.h"
#include "cli/recordchoice.h"

using namespace Qt::StringLiterals;

QString recordWords(const RecordKind &kind, int index, const QVariantMap &record)
{
    const QString words = u"%1 %2"_s.arg(kind.word).arg(index + 1);
    const QVariant name = record.value(kind.nameKey);
    return name.isValid() ? words + u" \"%1\""_s.arg(name.toString()) : words;
}

QString ChosenRecord::words() const
{
    return recordWords(*kind, index, record());
}

QString ChosenRecord::freeName(const QString &name) const
{
    QVariantList others = records;
    others.removeAt(index);
    return uniqueName(others, kind->nameKey, name);
}

CommandResult<ChosenRecord> chooseRecord(CommandContext &context, const RecordKind &kind)
{
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    const QVariantList records = (Document(*document).*kind.records)();
    const Result<int> index = recordIndex(context.arguments.first(), records, kind);
    if (!index)
        return wrongUsage(index.error().message);
    return ChosenRecord{.kind = &kind, .document = *document, .records = records, .index = *index};
}
