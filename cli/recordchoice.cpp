// SPDX-License-Identifier: MIT
#include "cli/recordchoice.h"

using namespace Qt::StringLiterals;

std::optional<int> recordNumber(const QString &text, const QVariantList &records, const RecordKind &kind,
                                QString &problem)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber)
        return number;
    std::optional<int> found;
    for (int index = 0; index < records.size(); ++index) {
        if (records.at(index).toMap().value(kind.nameKey).toString() != text)
            continue;
        if (found) {
            problem = u"several %1s are called \"%2\"; give the number"_s.arg(kind.word, text);
            return {};
        }
        found = index;
    }
    if (!found)
        problem = u"no %1 is called \"%2\" (see %3)"_s.arg(kind.word, text, kind.listCommand);
    return found;
}

std::optional<int> existingRecordNumber(const QString &text, const QVariantList &records, const RecordKind &kind,
                                        QString &problem)
{
    const std::optional<int> number = recordNumber(text, records, kind, problem);
    if (!number || (*number >= 0 && *number < records.size()))
        return number;
    problem = u"there is no %1 %2 (see %3)"_s.arg(kind.word).arg(*number).arg(kind.listCommand);
    return {};
}
