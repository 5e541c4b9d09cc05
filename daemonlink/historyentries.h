// SPDX-License-Identifier: MIT
// The entries of the daemon's object /History, and their parts, as values without D-Bus types. No state; any thread.
#pragma once

#include <QList>
#include <QVariant>
#include <QVariantMap>

/// Returns the entries in `list`, the value of a reply to "List" or "Next". Their dictionaries, such as an assignment,
/// are QVariantMaps at every depth. Empty for any other value.
[[nodiscard]] QList<QVariantMap> historyEntries(const QVariant &list);

/// The things that an entry has changed: the first ones, and how many there are.
struct HistoryParts
{
    QList<QVariantMap> list = {};
    uint count = 0;
};

/// Returns the parts in `shown`, the value of a reply to "Show", in the same way.
[[nodiscard]] HistoryParts historyParts(const QVariant &shown);
