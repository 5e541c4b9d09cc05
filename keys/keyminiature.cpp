// SPDX-License-Identifier: MIT
#include "keys/keyminiature.h"

#include "keys/keygeometry.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"

#include <QPainter>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

KeyMiniature::KeyMiniature(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void KeyMiniature::setLitKeys(const QList<int> &codes)
{
    mLitKeys = codes;
    mLitKeys.removeIf([](int code) { return !KeyLayout::rowForCode(code); });
    QStringList names;
    for (const int code : std::as_const(mLitKeys))
        names += keyName(code);
    setAccessibleName(names.join(u", "_s));
    update();
}

QSize KeyMiniature::sizeHint() const
{
    constexpr qreal unit = 11;
    return (KeyGeometry::size * unit).toSize() + QSize(2, 2);
}

void KeyMiniature::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal unit = std::min((width() - 2) / KeyGeometry::size.width(), (height() - 2) / KeyGeometry::size.height());
    painter.translate(1, 1);
    painter.setPen(palette().color(QPalette::Mid));
    for (const KeyShape &shape : KeyGeometry::shapes()) {
        const bool isLit = std::ranges::any_of(
            mLitKeys, [&shape](int code) { return KeyLayout::rowForCode(code)->outlet == shape.outlet; });
        painter.setBrush(palette().color(isLit ? QPalette::Highlight : QPalette::Button));
        const QRectF place(shape.place.topLeft() * unit, shape.place.size() * unit);
        painter.drawRoundedRect(place.adjusted(0.5, 0.5, -1, -1), 1.5, 1.5);
    }
}
