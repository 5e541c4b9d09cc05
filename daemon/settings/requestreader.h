// SPDX-License-Identifier: MIT
// Reads values out of a request, which a stranger may have built. Pure functions; any thread may call them.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace RequestReader {

/// A whole number that fits 32 bits (booleans count as 0 and 1); absent when the key is missing or holds anything else.
[[nodiscard]] std::optional<int> number(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<bool> flag(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<QString> text(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<QVariantMap> dictionary(const QVariantMap &request, QLatin1StringView key);
[[nodiscard]] std::optional<QVariantList> array(const QVariantMap &request, QLatin1StringView key);

} // namespace RequestReader
