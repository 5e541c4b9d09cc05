// SPDX-License-Identifier: MIT
// The small round mark at a key's corner. Its shape shows the kind of the key's assignment. Main thread (painting).
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
    other,         ///< a dot: an assignment that the program does not know
};

/// Returns the mark of an entry with this "command" (see KeyMappings).
[[nodiscard]] KeyMark keyMarkForCommand(qint32 command);

/// Paints `mark` as a disc that fills `place` (a square).
void paintKeyMark(QPainter &painter, const QRectF &place, KeyMark mark, const QPalette &palette, bool isEnabled);
