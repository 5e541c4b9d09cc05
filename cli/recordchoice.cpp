// SPDX-License-Identifier: MIT
#include "cli/recordchoice.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView nameMark{"name:"};

bool isNumber(const QString &text)
{
    return !text.isEmpty()
           && std::ranges::all_of(text, [](QChar character) { return character >= u'0' && character <= u'9'; });
}

Result<int> indexForNumber(const QString &text, qsizetype count, const RecordKind &kind)
{
    bool isInRange = false;
    const qlonglong number = text.toLongLong(&isInRange);
    if (isInRange && number >= 1 && number <= count)
        return static_cast<int>(number - 1);
    const QString hint = isInRange && number == 0 ? u": the first one is 1"_s : QString();
    return Error{u"there is no %1 %2%3 (see %4)"_s.arg(kind.word, text, hint, kind.listCommand)};
}

QString nameAt(const QVariantList &records, int index, const RecordKind &kind)
{
    return records.at(index).toMap().value(kind.nameKey).toString();
}

QList<int> indexesWithName(const QString &name, Qt::CaseSensitivity sensitivity, const QVariantList &records,
                           const RecordKind &kind)
{
    QList<int> indexes;
    for (int index = 0; index < records.size(); ++index) {
        if (nameAt(records, index, kind).compare(name, sensitivity) == 0)
            indexes += index;
    }
    return indexes;
}

Result<int> indexForName(const QString &name, const QVariantList &records, const RecordKind &kind)
{
    QList<int> found = indexesWithName(name, Qt::CaseSensitive, records, kind);
    if (found.isEmpty())
        found = indexesWithName(name, Qt::CaseInsensitive, records, kind);
    if (found.isEmpty())
        return Error{u"no %1 is called \"%2\" (see %3)"_s.arg(kind.word, name, kind.listCommand)};
    if (found.size() == 1)
        return found.first();
    QStringList candidates;
    for (const int index : std::as_const(found))
        candidates += QString::number(index + 1) + u" \"%1\""_s.arg(nameAt(records, index, kind));
    return Error{
        u"several %1s are called \"%2\": %3; give the number"_s.arg(kind.word, name, candidates.join(u", "_s))};
}

} // namespace

Result<int> recordIndex(const QString &text, const QVariantList &records, const RecordKind &kind)
{
    if (isNumber(text))
        return indexForNumber(text, records.size(), kind);
    return indexForName(text.startsWith(nameMark) ? text.sliced(nameMark.size()) : text, records, kind);
}

QString nameArgument(const QString &name)
{
    return isNumber(name) || name.startsWith(nameMark) ? nameMark + name : name;
}
