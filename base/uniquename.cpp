// SPDX-License-Identifier: MIT
#include "base/uniquename.h"

#include <QHash>
#include <QVariantMap>

using namespace Qt::StringLiterals;

QString uniqueName(const QStringList &names, const QString &base)
{
    QHash<QString, qsizetype> occurrences;
    for (const QString &name : names)
        ++occurrences[name];

    // The rule is defined as passes over the list, one for each of its names. Each pass adds the number of times that
    // the candidate occurs, and renames the candidate at its end. A pass without a hit changes nothing, and neither do
    // all later ones.
    QString candidate = base;
    qsizetype matches = 0;
    for (qsizetype pass = 0; pass < names.size(); ++pass) {
        const qsizetype hits = occurrences.value(candidate);
        if (hits == 0)
            break;
        matches += hits;
        candidate = u"%1(%2)"_s.arg(base, QString::number(matches + 1));
    }
    return candidate;
}

QString uniqueName(const QVariantList &records, QLatin1StringView nameKey, const QString &base)
{
    QStringList names;
    for (const QVariant &record : records) {
        if (const QVariant name = record.toMap().value(nameKey); name.typeId() == QMetaType::QString)
            names.append(name.toString());
    }
    return uniqueName(names, base);
}
