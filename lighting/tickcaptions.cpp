// SPDX-License-Identifier: MIT
#include "lighting/tickcaptions.h"

#include <QLabel>
#include <QSlider>
#include <QStyle>

TickCaptions::TickCaptions(QSlider *slider, QWidget *parent) : QWidget(parent), mSlider(slider)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TickCaptions::addCaption(QLabel *caption, int sliderValue)
{
    caption->setParent(this);
    mCaptions.append({caption, sliderValue});
    updateGeometry();
}

QSize TickCaptions::sizeHint() const
{
    QSize size;
    for (const Caption &caption : mCaptions) {
        const QSize hint = caption.label->sizeHint();
        size = {size.width() + hint.width() + 8, qMax(size.height(), hint.height())};
    }
    return size;
}

void TickCaptions::resizeEvent(QResizeEvent *)
{
    const int handle = style()->pixelMetric(QStyle::PM_SliderLength, nullptr, mSlider);
    const int span = width() - handle;
    for (const Caption &caption : mCaptions) {
        const QSize size = caption.label->sizeHint();
        const int centre =
            handle / 2
            + QStyle::sliderPositionFromValue(mSlider->minimum(), mSlider->maximum(), caption.sliderValue, span,
                                              layoutDirection() == Qt::RightToLeft);
        const int left = qBound(0, centre - size.width() / 2, qMax(0, width() - size.width()));
        caption.label->setGeometry(left, 0, size.width(), height());
    }
}
