// SPDX-License-Identifier: MIT
// Writes the binary property-list form for PropertyList::writeBinary. No state; any thread.
#pragma once

#include <QByteArray>
#include <QVariant>

#include <optional>

/// Does the work of PropertyList::writeBinary.
[[nodiscard]] std::optional<QByteArray> writeBinaryPropertyList(const QVariant &root);
