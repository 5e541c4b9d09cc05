// SPDX-License-Identifier: MIT
#include "keys/keysearch.h"

#include <algorithm>

namespace {

enum class Fit { none, some, exact };

bool beginsAWord(const QString &name, const QString &query)
{
    for (qsizetype at = name.indexOf(query, 0, Qt::CaseInsensitive); at >= 0;
         at = name.indexOf(query, at + 1, Qt::CaseInsensitive)) {
        if (at == 0 || name[at - 1].isSpace())
            return true;
    }
    // "caps lock" and "capslock" are the same key, and so are "num lock" and "numlock".
    QString joined(name), joinedQuery(query);
    return joined.remove(u' ').startsWith(joinedQuery.remove(u' '), Qt::CaseInsensitive);
}

Fit fitOf(const KeySearchEntry &entry, const QString &query)
{
    if (entry.names.contains(query, Qt::CaseInsensitive))
        return Fit::exact;
    const bool fits =
        std::ranges::any_of(entry.names, [&](const QString &name) { return beginsAWord(name, query); })
        || std::ranges::any_of(entry.assignment, [&](const QString &text) {
               return query.size() == 1 ? beginsAWord(text, query) : text.contains(query, Qt::CaseInsensitive);
           });
    return fits ? Fit::some : Fit::none;
}

} // namespace

QList<int> keysFitting(const QString &query, const QList<KeySearchEntry> &entries)
{
    const QString wanted = query.simplified();
    if (wanted.isEmpty())
        return {};
    QList<int> exact, others;
    for (const KeySearchEntry &entry : entries) {
        switch (fitOf(entry, wanted)) {
        case Fit::exact: exact << entry.code; break;
        case Fit::some: others << entry.code; break;
        case Fit::none: break;
        }
    }
    return exact + others;
}
