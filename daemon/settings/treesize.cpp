// SPDX-License-Identifier: MIT
#include "daemon/settings/treesize.h"

#include <QVariantList>
#include <QVariantMap>

#include <algorithm>

namespace {

void addInside(TreeSize &size, const TreeSize &inner)
{
    size.nodes += inner.nodes;
    size.contentBytes += inner.contentBytes;
    size.depth = std::max(size.depth, inner.depth + 1);
}

} // namespace

// Trees come from the codec or from the daemon itself, so the recursion is bounded.
TreeSize TreeSize::of(const QVariant &value)
{
    TreeSize size{.nodes = 1, .contentBytes = 0, .depth = 1};
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry)
            addInside(size, ofEntry(entry.key(), entry.value()));
        break;
    }
    case QMetaType::QVariantList:
        for (const QVariant &entry : value.toList())
            addInside(size, of(entry));
        break;
    case QMetaType::QString: size.contentBytes = 2 * value.toString().size(); break;
    case QMetaType::QByteArray: size.contentBytes = value.toByteArray().size(); break;
    default: break;
    }
    return size;
}

TreeSize TreeSize::ofEntry(const QString &key, const QVariant &value)
{
    TreeSize size = of(value);
    ++size.nodes;
    size.contentBytes += 2 * key.size();
    return size;
}
