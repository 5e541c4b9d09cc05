// SPDX-License-Identifier: MIT
// Reads values of a request, which may come from any program. Pure functions; any thread.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace RequestReader {

/// A whole number that fits 32 bits, with booleans as 0 and 1. Absent if the key is missing or has any other value.
[[nodiscard]] std::optional<int> number(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<bool> flag(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<QString> text(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<QVariantMap> dictionary(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<QVariantList> array(const QVariantMap &request, QLatin1StringView key);

} // namespace RequestReader
