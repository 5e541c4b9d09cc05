// SPDX-License-Identifier: MIT
// A tab view that is laid out again only when the sizes that its pages ask for have changed. Main thread only.
#pragma once

#include <QTabWidget>

/// A layout asks its parents to lay out again for every change in it, even one that changes no size, and QTabWidget
/// answers by painting all of itself: the whole page for each new text of a label.
class TabView : public QTabWidget
{
    Q_OBJECT

public:
    using QTabWidget::QTabWidget;

protected:
    bool event(QEvent *event) override;

private:
    /// What its layout depends on, besides its own size.
    struct Sizes
    {
        QSize hint;
        QSize minimum;
        QSize tabBar;
        int heightForWidth = -1;

        bool operator==(const Sizes &) const = default;
    };

    Sizes mLaidOutSizes;
};
