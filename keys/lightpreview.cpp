// SPDX-License-Identifier: MIT
#include "keys/lightpreview.h"

#include "base/text.h"
#include "keys/keycap.h"
#include "keys/picturelayout.h"

#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal preferredUnit = 24;
constexpr qreal smallestUnit = 6;

} // namespace

LightPreview::LightPreview(QWidget *parent) : QWidget(parent)
{
    setObjectName("mLightPreview"_L1);
    setAccessibleName(localizedText("lkeyLightPreview"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    mLight.follow(this);
}

QSize LightPreview::sizeHint() const
{
    return PictureLayout::sizeForUnit(preferredUnit);
}

QSize LightPreview::minimumSizeHint() const
{
    return PictureLayout::sizeForUnit(smallestUnit);
}

void LightPreview::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange)
        update();
    QWidget::changeEvent(event);
}

void LightPreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const PictureLayout layout(size());
    paintKeyboardCase(painter, layout.caseRect(), layout.unit(), palette(), isEnabled());
    QList<QRect> places;
    for (const KeyShape &shape : KeyGeometry::shapes())
        places += layout.placeOf(shape);
    if (isEnabled())
        mLight.paint(painter, places, layout.unit());
    // Without legends, which could not be read.
    for (qsizetype index = 0; index < places.size(); ++index) {
        const bool isExtra = KeyGeometry::shapes()[static_cast<std::size_t>(index)].look == KeyLook::extra;
        paintKeycap(painter, places[index], layout.unit(),
                    {.look = isExtra ? KeyLook::extra : KeyLook::blank, .isEnabled = isEnabled()}, palette());
    }
}
