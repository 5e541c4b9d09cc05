// SPDX-License-Identifier: MIT
// The entries of the daemon's object /History as values without D-Bus types. No state; any thread.
#pragma once

#include <QList>
#include <QVariant>
#include <QVariantMap>

/// Returns the entries in `list`, the value of a reply to "List" or "Next". Their dictionaries, such as an assignment,
/// are QVariantMaps at every depth. Empty for any other value.
[[nodiscard]] QList<QVariantMap> historyEntries(const QVariant &list);
