// SPDX-License-Identifier: MIT
// The small round mark at a key's corner that tells the kind of its assignment by its shape. Main thread (painting).
#pragma once

#include <QtGlobal>

class QPainter;
class QPalette;
class QRectF;

enum class KeyMark {
    none,
    singleKey,     ///< arrow to the right
    macro,         ///< play triangle
    profile,       ///< two stacked cards
    launchProgram, ///< arrow out to the upper right
    disabled,      ///< cross
    other,         ///< a dot: an assignment this program does not know
};

/// The mark of an entry with this "command" (see KeyMappings).
[[nodiscard]] KeyMark keyMarkForCommand(qint32 command);

/// Paints `mark` as a disc that fills `place` (a square).
void paintKeyMark(QPainter &painter, const QRectF &place, KeyMark mark, const QPalette &palette, bool isEnabled);
