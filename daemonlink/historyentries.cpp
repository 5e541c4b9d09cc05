// SPDX-License-Identifier: MIT
#include "daemonlink/historyentries.h"

#include "base/historykeys.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace {

void convertAssignment(QVariantMap &change)
{
    if (const auto inside = change.constFind(HistoryKeys::assignment); inside != change.cend())
        change.insert(HistoryKeys::assignment, qdbus_cast<QVariantMap>(*inside));
}

} // namespace

QList<QVariantMap> historyEntries(const QVariant &list)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    QList<QVariantMap> entries = qdbus_cast<QList<QVariantMap>>(list);
    for (QVariantMap &entry : entries) {
        convertAssignment(entry);
        const auto inside = entry.constFind(HistoryKeys::change);
        if (inside == entry.cend())
            continue;
        QVariantMap change = qdbus_cast<QVariantMap>(*inside);
        convertAssignment(change);
        entry.insert(HistoryKeys::change, change);
    }
    return entries;
}
