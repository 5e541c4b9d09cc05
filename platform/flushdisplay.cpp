// SPDX-License-Identifier: MIT
#include "platform/flushdisplay.h"

#include <QAbstractEventDispatcher>

void flushDisplay()
{
    if (QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance())
        Q_EMIT dispatcher->aboutToBlock();
}
