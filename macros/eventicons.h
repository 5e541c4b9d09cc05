// SPDX-License-Identifier: MIT
// The icons before the lines of the event list: down, up, a clock. Each is drawn once in the palette's colours. Owned
// by the macros tab. Main thread only.
#pragma once

#include "macros/eventline.h"

#include <QIcon>
#include <QMap>

#include <utility>

class QPalette;

class EventIcons
{
public:
    /// Draws the icons again when `palette` differs from that of the call before.
    [[nodiscard]] QIcon icon(EventLineKind kind, const QPalette &palette);
    /// The icon of a press or release without its counterpart, with an exclamation mark.
    [[nodiscard]] QIcon unpairedIcon(EventLineKind kind, const QPalette &palette);

    /// Returns a dot for recording or a square for stopping.
    [[nodiscard]] static QIcon recordIcon(bool isStop);

private:
    [[nodiscard]] QIcon icon(EventLineKind kind, const QPalette &palette, bool isUnpaired);

    QMap<std::pair<EventLineKind, bool>, QIcon> mIcons; ///< by kind, and whether unpaired
    qint64 mPaletteKey = 0;
};
