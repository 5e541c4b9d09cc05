// SPDX-License-Identifier: MIT
// Reads the XML property-list form for PropertyList::read. No state; any thread.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QVariant>

#include <optional>

/// True when `text` begins like XML rather than like old-style data ("<0fbd>").
[[nodiscard]] bool isXmlPropertyList(QStringView text);

/// Returns the tree in `data`, in the encoding that its byte order mark or declaration names. A real out of the range
/// of a double is infinity or zero, with its sign. Absent when `data` is not well-formed, is not a property list, or
/// exceeds a limit of propertylist.h or xmloutline.h.
[[nodiscard]] std::optional<QVariant> readXmlPropertyList(QByteArrayView data);
/// Does the same for decoded text.
[[nodiscard]] std::optional<QVariant> readXmlPropertyList(const QString &text);
