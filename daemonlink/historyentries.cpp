// SPDX-License-Identifier: MIT
#include "daemonlink/historyentries.h"

#include "base/historykeys.h"

#include <QDBusArgument>
#include <QDBusMetaType>

namespace {

QVariantMap plainMap(QVariantMap map)
{
    for (QVariant &value : map) {
        const bool isMap =
            value.canConvert<QDBusArgument>() && value.value<QDBusArgument>().currentType() == QDBusArgument::MapType;
        if (isMap)
            value = plainMap(qdbus_cast<QVariantMap>(value));
    }
    return map;
}

} // namespace

QList<QVariantMap> historyEntries(const QVariant &list)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    QList<QVariantMap> entries = qdbus_cast<QList<QVariantMap>>(list);
    for (QVariantMap &entry : entries)
        entry = plainMap(entry);
    return entries;
}

HistoryParts historyParts(const QVariant &shown)
{
    const QVariantMap values = qdbus_cast<QVariantMap>(shown);
    return {.list = historyEntries(values.value(HistoryKeys::parts)),
            .count = values.value(HistoryKeys::count).toUInt()};
}
