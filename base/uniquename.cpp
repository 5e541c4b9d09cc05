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

    // The rule is told as passes over the list, as many as it has names, each adding its hits and renaming the
    // candidate at its end. A pass adds what the candidate occurs; one without a hit changes nothing, so all later ones
    // do not either.
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
