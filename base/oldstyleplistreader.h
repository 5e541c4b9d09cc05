// SPDX-License-Identifier: MIT
// Reads the old-style text form of a property list, { key = value; }, for PropertyList::read. No state; any thread.
// A file of strings, key = value; without the braces, is such a dictionary, too.
#pragma once

#include <QStringView>
#include <QVariant>

#include <optional>

/// The tree in `text`: dictionaries, arrays, strings and data are all that this form can say.
/// Absent when `text` is malformed, is a string alone, or exceeds a limit of propertylist.h.
[[nodiscard]] std::optional<QVariant> readOldStylePropertyList(QStringView text);
