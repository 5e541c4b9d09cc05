// SPDX-License-Identifier: MIT
// The pictures before the lines of the event list: down, up, a clock. Drawn in the palette's colours, once for each.
// Owned by the macros tab. Main thread only.
#pragma once

#include "macros/eventline.h"

#include <QHash>
#include <QIcon>

class QPalette;

class EventIcons
{
public:
    /// Follows a change of the palette at the next call.
    [[nodiscard]] QIcon icon(EventLineKind kind, const QPalette &palette);

    /// A dot for recording, a square for stopping.
    [[nodiscard]] static QIcon recordIcon(bool isStop);

private:
    QHash<EventLineKind, QIcon> mIcons;
    qint64 mPaletteKey = 0;
};
