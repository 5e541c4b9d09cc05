// SPDX-License-Identifier: MIT
// Reads the old-style text form of a property list, { key = value; }, for PropertyList::read. No state; any thread. A
// file of strings, key = value; without the braces, is also such a dictionary.
#pragma once

#include <QStringView>
#include <QVariant>

#include <optional>

/// Returns the tree in `text`. This form has only dictionaries, arrays, strings and data. Absent when `text` is
/// malformed, is a string alone, or exceeds a limit of propertylist.h.
[[nodiscard]] std::optional<QVariant> readOldStylePropertyList(QStringView text);
