// SPDX-License-Identifier: MIT
// The small round mark at a key's corner. Its shape shows the kind of the key's assignment. Main thread (painting).
#pragma once

#include <QRectF>

class QPainter;
class QPalette;

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

/// Returns the square at the lower right of `face` that a mark fills. `unit` is the length of one key unit in the same
/// measure.
[[nodiscard]] QRectF keyMarkPlace(const QRectF &face, qreal unit);

/// Paints `mark` as a disc that fills `place` (a square).
void paintKeyMark(QPainter &painter, const QRectF &place, KeyMark mark, const QPalette &palette, bool isEnabled);
