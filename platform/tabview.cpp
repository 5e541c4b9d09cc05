// SPDX-License-Identifier: MIT
#include "platform/tabview.h"

#include <QEvent>
#include <QTabBar>

bool TabView::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && isVisible()) {
        const Sizes sizes{sizeHint(), minimumSizeHint(), tabBar()->sizeHint(), heightForWidth(width())};
        if (sizes == mLaidOutSizes)
            return true;
        mLaidOutSizes = sizes;
    }
    return QTabWidget::event(event);
}
