// SPDX-License-Identifier: MIT
#include "platform/checkbox.h"

#include "platform/indicatoroutline.h"

#include <QPainter>
#include <QStyleOptionButton>

void CheckBox::paintEvent(QPaintEvent *event)
{
    QCheckBox::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    IndicatorOutline::drawOnDark(painter, this, style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this),
                                 IndicatorOutline::Shape::box);
}
