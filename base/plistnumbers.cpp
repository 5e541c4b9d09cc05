// SPDX-License-Identifier: MIT
#include "base/plistnumbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double beyond64Bits = 0x1p63;

qint32 leadingInteger(QStringView text)
{
    constexpr qint32 lowest = std::numeric_limits<qint32>::min();
    constexpr qint32 highest = std::numeric_limits<qint32>::max();
    text = text.trimmed();
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+'))
        text = text.sliced(1);
    qint64 value = 0;
    for (const QChar character : text) {
        if (character < u'0' || character > u'9')
            break;
        value = std::min<qint64>(value * 10 + (character.unicode() - u'0'), qint64(highest) + 1);
    }
    return static_cast<qint32>(std::clamp<qint64>(isNegative ? -value : value, lowest, highest));
}

} // namespace

qint32 PlistNumbers::integerValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool: return value.toBool() ? 1 : 0;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong: return static_cast<qint32>(value.toLongLong());
    case QMetaType::ULongLong: return static_cast<qint32>(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double: {
        const double number = value.toDouble();
        // Also false for not-a-number, whose conversion would be undefined.
        return std::abs(number) < beyond64Bits ? static_cast<qint32>(static_cast<qint64>(number)) : 0;
    }
    case QMetaType::QString: return leadingInteger(value.toString());
    default: return 0;
    }
}
