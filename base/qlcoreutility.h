// SPDX-License-Identifier: MIT
// Property-list codec and the unique-name rule. No state; any thread may call every function.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

class QlCoreUtility
{
public:
    /// Serialises `dictionary` as a binary property list, version 1.0. Absent when `dictionary` is absent or a value
    /// has no property-list type (see propertylist.h).
    [[nodiscard]] static std::optional<QByteArray>
    convertDictionaryToData(const std::optional<QVariantMap> &dictionary);

    /// Parses a property list of any format (binary, XML, old-style text). Absent when `data` is absent, damaged, over
    /// the limits of propertylist.h, or has no dictionary at its root.
    [[nodiscard]] static std::optional<QVariantMap> convertDataToDictionary(const std::optional<QByteArray> &data);

    /// Returns a name that no "MacroName" in `macros` (array of macro records) has yet; the rule is in uniquename.h.
    [[nodiscard]] static QString generateNameUsingDefaultName(const QVariantList &macros, const QString &defaultName);
};
