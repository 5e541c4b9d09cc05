// SPDX-License-Identifier: MIT
#include "daemon/settings/requestreader.h"

#include <cmath>
#include <limits>

namespace {

constexpr qlonglong smallest = std::numeric_limits<int>::min();
constexpr qlonglong greatest = std::numeric_limits<int>::max();

template <typename Value> std::optional<Value> ofType(const QVariantMap &request, QLatin1StringView key)
{
    const auto found = request.constFind(key);
    if (found == request.constEnd() || found->typeId() != QMetaType::fromType<Value>().id())
        return {};
    return found->template value<Value>();
}

} // namespace

std::optional<int> RequestReader::number(const QVariantMap &request, QLatin1StringView key)
{
    const QVariant value = request.value(key);
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong: {
        const qlonglong number = value.toLongLong();
        return number >= smallest && number <= greatest ? std::optional(static_cast<int>(number)) : std::nullopt;
    }
    case QMetaType::Double: {
        const double number = value.toDouble();
        const bool isWhole = number >= double(smallest) && number <= double(greatest) && std::trunc(number) == number;
        return isWhole ? std::optional(static_cast<int>(number)) : std::nullopt;
    }
    default: return {};
    }
}

std::optional<bool> RequestReader::flag(const QVariantMap &request, QLatin1StringView key)
{
    const std::optional<int> value = number(request, key);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::optional<QString> RequestReader::text(const QVariantMap &request, QLatin1StringView key)
{
    return ofType<QString>(request, key);
}

std::optional<QVariantMap> RequestReader::dictionary(const QVariantMap &request, QLatin1StringView key)
{
    return ofType<QVariantMap>(request, key);
}

std::optional<QVariantList> RequestReader::array(const QVariantMap &request, QLatin1StringView key)
{
    return ofType<QVariantList>(request, key);
}
