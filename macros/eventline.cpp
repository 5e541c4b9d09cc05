// SPDX-License-Identifier: MIT
#include "macros/eventline.h"

#include <QString>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView delayEnding = " seconds delay"_L1;
constexpr QLatin1StringView keyPress = "Key Press "_L1;
constexpr QLatin1StringView keyRelease = "Key Release "_L1;
constexpr QLatin1StringView buttonDown = " down"_L1;
constexpr QLatin1StringView buttonUp = " up"_L1;

} // namespace

EventLineKind eventLineKind(QStringView line)
{
    const QStringView text = line.trimmed();
    if (text.endsWith(delayEnding))
        return EventLineKind::delay;
    if (text.startsWith("Key Release"_L1) || (text.endsWith(" up"_L1) && !text.startsWith("Key "_L1)))
        return EventLineKind::release;
    return EventLineKind::press;
}

std::optional<int> delayMsOfLine(QStringView line)
{
    const QStringView text = line.trimmed();
    if (!text.endsWith(delayEnding))
        return std::nullopt;
    bool isNumber = false;
    const double delayMs = std::round(text.chopped(delayEnding.size()).toDouble(&isNumber) * 1000);
    if (!isNumber || !(std::abs(delayMs) <= std::numeric_limits<int>::max()))
        return std::nullopt;
    return static_cast<int>(delayMs);
}

QStringView nameInEventLine(QStringView line)
{
    for (const QLatin1StringView beginning : {keyPress, keyRelease}) {
        if (line.startsWith(beginning))
            return line.sliced(beginning.size()).trimmed();
    }
    const QStringView text = line.trimmed();
    for (const QLatin1StringView ending : {buttonDown, buttonUp}) {
        if (text.endsWith(ending))
            return text.chopped(ending.size());
    }
    return {};
}
