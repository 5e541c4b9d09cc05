// SPDX-License-Identifier: MIT
#include "platform/screenroom.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

QSize roomOnScreen(const QWidget *window)
{
    const int titleBar = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    return window->screen()->availableSize() - QSize(0, titleBar);
}
