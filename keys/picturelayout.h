// SPDX-License-Identifier: MIT
// The places of the keys when the keyboard's picture is scaled into a widget. A value; any thread.
#pragma once

#include "keys/keygeometry.h"

#include <QRect>
#include <QSize>

/// Keeps the ratio of the keyboard and centres it in the available space. All lengths are in pixels.
class PictureLayout
{
public:
    PictureLayout() = default;
    explicit PictureLayout(const QSize &available);

    /// Returns the size of the picture, case included, for this length of a key unit.
    [[nodiscard]] static QSize sizeForUnit(qreal unit);
    [[nodiscard]] static int heightForWidth(int width);

    [[nodiscard]] qreal unit() const { return mUnit; } ///< length of a key unit
    [[nodiscard]] QRectF caseRect() const { return mCase; }
    /// Returns the place of something at `place`, in key units from the corner of the keys.
    [[nodiscard]] QRectF rectOf(const QRectF &place) const;
    /// Returns the place of a key. Keys that touch in the data touch on the screen.
    [[nodiscard]] QRect placeOf(const KeyShape &shape) const;

private:
    qreal mUnit = 0;
    QRectF mCase;
};
