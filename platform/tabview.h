// SPDX-License-Identifier: MIT
// A tab view that asks only the page in front for sizes, is laid out again only when these have changed, and tells
// assistive tools which tab is in front. Main thread only.
#pragma once

#include <QTabWidget>

/// QTabWidget asks all of its pages for their sizes, and more than once before the first of them is seen; a page that
/// is not shown need not be laid out for that. A layout asks its parents to lay out again for every change in it, even
/// one that changes no size, and QTabWidget answers by painting all of itself: the whole page for each new text of a
/// label.
class TabView : public QTabWidget
{
    Q_OBJECT

public:
    explicit TabView(QWidget *parent = nullptr);

    /// What the title bar and the page in front ask for.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// None: a page is as high as the room that is left for it.
    bool hasHeightForWidth() const override { return false; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// What its layout depends on, besides its own size.
    struct Sizes
    {
        QSize hint;
        QSize minimum;
        QSize tabBar;

        bool operator==(const Sizes &) const = default;
    };

    void tellNoLongerInFront(int index);
    QSize sizeAround(const QSize &page, const QSize &bar) const;

    Sizes mLaidOutSizes;
    int mTabInFront = -1;
};
