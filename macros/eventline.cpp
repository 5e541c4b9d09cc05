// SPDX-License-Identifier: MIT
#include "macros/eventline.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView delayEnding = " seconds delay"_L1;

} // namespace

EventLineKind eventLineKind(const QString &line)
{
    const QString text = line.trimmed();
    if (text.endsWith(delayEnding))
        return EventLineKind::delay;
    if (text.startsWith("Key Release"_L1) || (text.endsWith(" up"_L1) && !text.startsWith("Key "_L1)))
        return EventLineKind::release;
    return EventLineKind::press;
}

std::optional<int> delayMsOfLine(const QString &line)
{
    const QString text = line.trimmed();
    if (!text.endsWith(delayEnding))
        return std::nullopt;
    bool isNumber = false;
    const double delayMs = std::round(text.chopped(delayEnding.size()).toDouble(&isNumber) * 1000);
    if (!isNumber || !(std::abs(delayMs) <= std::numeric_limits<int>::max()))
        return std::nullopt;
    return static_cast<int>(delayMs);
}
