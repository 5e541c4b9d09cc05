// SPDX-License-Identifier: MIT
#include "platform/boldtext.h"

#include <QWidget>

void makeBold(QWidget *widget)
{
    QFont font = widget->font();
    font.setBold(true);
    widget->setFont(font);
}
