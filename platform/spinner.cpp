// SPDX-License-Identifier: MIT
#include "platform/spinner.h"

#include <QPainter>
#include <QTimerEvent>

namespace {

constexpr int spokeCount = 12;
constexpr int stepMs = 80;

} // namespace

Spinner::Spinner(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // Reserves the place of the hidden spinner; otherwise other widgets would move when it appears.
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    hide();
}

void Spinner::startAnimation()
{
    if (!mTimer.isActive())
        mTimer.start(stepMs, this);
    show();
}

void Spinner::stopAnimation()
{
    mTimer.stop();
    hide();
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const qreal radius = qMin(width(), height()) / 2.0 - 1;
    QColor color = palette().color(QPalette::WindowText);
    for (int spoke = 0; spoke < spokeCount; ++spoke) {
        const int age = (mStep - spoke + spokeCount) % spokeCount;
        color.setAlphaF(float(qMax(0.15, 1.0 - age / qreal(spokeCount - 2))));
        painter.setPen(QPen(color, radius / 6, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 * spoke / spokeCount);
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius));
        painter.restore();
    }
}

void Spinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != mTimer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    mStep = (mStep + 1) % spokeCount;
    update();
}
