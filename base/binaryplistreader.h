// SPDX-License-Identifier: MIT
// Reads the binary property-list form for PropertyList::read. No state; any thread.
#pragma once

#include <QByteArrayView>
#include <QVariant>

#include <optional>

/// True when `data` begins like a binary property list of any version.
[[nodiscard]] bool isBinaryPropertyList(QByteArrayView data);

/// Returns the tree in `data`. Absent when `data` is damaged, of another version than 1.0 or exceeds a limit of
/// propertylist.h.
[[nodiscard]] std::optional<QVariant> readBinaryPropertyList(QByteArrayView data);
