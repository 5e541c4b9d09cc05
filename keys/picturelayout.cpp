// SPDX-License-Identifier: MIT
#include "keys/picturelayout.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr qreal border = 0.3; // of the case around the keys, in key units
constexpr QSizeF caseUnits(KeyGeometry::size.width() + 2 * border, KeyGeometry::size.height() + 2 * border);

} // namespace

PictureLayout::PictureLayout(const QSize &available)
    : mUnit(std::min(available.width() / caseUnits.width(), available.height() / caseUnits.height()))
{
    const QSizeF size = caseUnits * mUnit;
    mCase = QRectF(QPointF((available.width() - size.width()) / 2, (available.height() - size.height()) / 2), size);
}

QSize PictureLayout::sizeForUnit(qreal unit)
{
    return {static_cast<int>(std::ceil(caseUnits.width() * unit)),
            static_cast<int>(std::ceil(caseUnits.height() * unit))};
}

int PictureLayout::heightForWidth(int width)
{
    return static_cast<int>(std::ceil(width * caseUnits.height() / caseUnits.width()));
}

QRectF PictureLayout::rectOf(const QRectF &place) const
{
    return {mCase.topLeft() + (place.topLeft() + QPointF(border, border)) * mUnit, place.size() * mUnit};
}

QRect PictureLayout::placeOf(const KeyShape &shape) const
{
    // Edges are rounded instead of sizes.
    const QRectF rect = rectOf(shape.place);
    return {rect.topLeft().toPoint(), rect.bottomRight().toPoint() - QPoint(1, 1)};
}
