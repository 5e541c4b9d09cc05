// SPDX-License-Identifier: MIT
#include "cli/recordchoice.h"

#include <optional>

using namespace Qt::StringLiterals;

Result<int> recordNumber(const QString &text, const QVariantList &records, const RecordKind &kind)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber)
        return number;
    std::optional<int> found;
    for (int index = 0; index < records.size(); ++index) {
        if (records.at(index).toMap().value(kind.nameKey).toString() != text)
            continue;
        if (found)
            return Error{u"several %1s are called \"%2\"; give the number"_s.arg(kind.word, text)};
        found = index;
    }
    if (!found)
        return Error{u"no %1 is called \"%2\" (see %3)"_s.arg(kind.word, text, kind.listCommand)};
    return *found;
}

Result<int> existingRecordNumber(const QString &text, const QVariantList &records, const RecordKind &kind)
{
    const Result<int> number = recordNumber(text, records, kind);
    if (!number || (*number >= 0 && *number < records.size()))
        return number;
    return Error{u"there is no %1 %2 (see %3)"_s.arg(kind.word).arg(*number).arg(kind.listCommand)};
}
