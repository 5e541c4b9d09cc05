// SPDX-License-Identifier: MIT
#include "macros/eventline.h"

using namespace Qt::StringLiterals;

EventLineKind eventLineKind(const QString &line)
{
    const QString text = line.trimmed();
    if (text.endsWith(" seconds delay"_L1))
        return EventLineKind::delay;
    if (text.startsWith("Key Release"_L1) || (text.endsWith(" up"_L1) && !text.startsWith("Key "_L1)))
        return EventLineKind::release;
    return EventLineKind::press;
}
