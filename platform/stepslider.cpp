// SPDX-License-Identifier: MIT
#include "platform/stepslider.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>
#include <QWheelEvent>

StepSlider::StepSlider(QWidget *parent) : QSlider(Qt::Horizontal, parent)
{
    setPageStep(1);
    setTickInterval(1);
    setTickPosition(QSlider::TicksBelow);
    constexpr int lowest = 26; // less would cut off the handle above the ticks
    setMinimumHeight(lowest);
}

void StepSlider::endDrag()
{
    const QPointF point = place(QStyle::SC_SliderHandle).center();
    QMouseEvent release(QEvent::MouseButtonRelease, point, mapToGlobal(point), Qt::LeftButton, Qt::NoButton, {});
    QSlider::mouseReleaseEvent(&release);
}

QRect StepSlider::place(QStyle::SubControl part) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, part, this);
}

void StepSlider::mousePressEvent(QMouseEvent *event)
{
    const QRect handle = place(QStyle::SC_SliderHandle);
    const QPoint point = event->position().toPoint();
    if (event->button() != Qt::LeftButton || handle.contains(point))
        return QSlider::mousePressEvent(event);
    const QRect groove = place(QStyle::SC_SliderGroove);
    setValue(QStyle::sliderValueFromPosition(minimum(), maximum(), point.x() - groove.left() - handle.width() / 2,
                                             groove.width() - handle.width(), invertedAppearance()));
    event->accept();
}

void StepSlider::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QSlider::wheelEvent(event);
    else
        event->ignore();
}
