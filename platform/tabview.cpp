// SPDX-License-Identifier: MIT
#include "platform/tabview.h"

#include "platform/lowbands.h"
#include "platform/tabbaraccessibility.h"

#include <QAccessible>
#include <QPaintEvent>
#include <QStackedWidget>
#include <QStyleOptionTabWidgetFrame>
#include <QStylePainter>
#include <QTabBar>

#include <algorithm>
#include <utility>

TabView::TabView(QWidget *parent) : QTabWidget(parent)
{
    TabBarAccessibility::install();
    tabBar()->setPalette(framePalette());
    connect(this, &QTabWidget::currentChanged, this, &QWidget::updateGeometry);
    connect(this, &QTabWidget::currentChanged, this,
            [this](int index) { tellNoLongerInFront(std::exchange(mTabInFront, index)); });
    // The base class resizes the stack before anything is visible. Without a size until then, the stack would ask all
    // pages for theirs.
    findChild<QStackedWidget *>()->resize(size());
}

/// Reports the tab that has left the front. The bar itself reports the tab that has come to it.
void TabView::tellNoLongerInFront(int index)
{
    if (!QAccessible::isActive() || index < 0 || index >= count())
        return;
    QAccessibleEvent event(tabBar(), QAccessible::SelectionRemove);
    event.setChild(index);
    QAccessible::updateAccessibility(&event);
}

QSize TabView::sizeHint() const
{
    return sizeAround(currentWidget() ? currentWidget()->sizeHint() : QSize(), tabBar()->sizeHint());
}

QSize TabView::minimumSizeHint() const
{
    return sizeAround(currentWidget() ? currentWidget()->minimumSizeHint() : QSize(), tabBar()->minimumSizeHint());
}

QSize TabView::sizeAround(const QSize &page, const QSize &bar) const
{
    const QSize contents(std::max(page.width(), bar.width()), std::max(0, page.height()) + bar.height());
    QStyleOptionTabWidgetFrame option;
    initStyleOption(&option);
    return style()->sizeFromContents(QStyle::CT_TabWidget, &option, contents, this);
}

/// The palette of frame and tabs. The style makes them lighter than buttons. On a dark desktop, the pages would be a
/// grey without contrast to the text fields and the buttons on it.
QPalette TabView::framePalette() const
{
    QPalette frame = palette();
    const QColor window = frame.color(QPalette::Window);
    if (window.lightness() < frame.color(QPalette::WindowText).lightness())
        frame.setColor(QPalette::Button, window);
    return frame;
}

bool TabView::event(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && tabBar()->palette() != framePalette())
        tabBar()->setPalette(framePalette());

    if (event->type() == QEvent::LayoutRequest && isVisible()) {
        const Sizes sizes{sizeHint(), minimumSizeHint(), tabBar()->sizeHint()};
        if (sizes == mLaidOutSizes)
            return true;
        mLaidOutSizes = sizes;
    }
    return QTabWidget::event(event);
}

/// Paints like the base class, but in strips.
void TabView::paintEvent(QPaintEvent *event)
{
    constexpr int spansPerLine = 2; // of one outline
    QStyleOptionTabWidgetFrame option;
    initStyleOption(&option);
    option.palette = framePalette();
    option.rect = style()->subElementRect(QStyle::SE_TabWidgetTabPane, &option, this);
    QStylePainter painter(this);
    // At some scales an outline reaches beyond its rectangle.
    const QRect drawn = option.rect.adjusted(-1, -1, 1, 1) & event->rect();
    paintInLowBands(painter, drawn, spansPerLine,
                    [&painter, &option] { painter.drawPrimitive(QStyle::PE_FrameTabWidget, option); });
}
