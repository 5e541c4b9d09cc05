// SPDX-License-Identifier: MIT
// A tab view that asks only the page in front for sizes, repeats its layout only when these change, and reports the tab
// in front to assistive tools. Main thread only.
#pragma once

#include <QTabWidget>

/// QTabWidget asks all its pages for sizes more than once before the first is visible, which needlessly lays out hidden
/// pages. It also repaints itself completely whenever a layout in it requests a new one. Layouts request one for every
/// change, even without a change of size: each new text of a label would repaint the whole page.
class TabView : public QTabWidget
{
    Q_OBJECT

public:
    explicit TabView(QWidget *parent = nullptr);

    /// The size that the tab bar and the page in front need.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// False: a page takes the height that is left for it.
    bool hasHeightForWidth() const override { return false; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// The sizes on which the layout depends, besides that of the view.
    struct Sizes
    {
        QSize hint;
        QSize minimum;
        QSize tabBar;

        bool operator==(const Sizes &) const = default;
    };

    void tellNoLongerInFront(int index);
    [[nodiscard]] QPalette framePalette() const;
    QSize sizeAround(const QSize &page, const QSize &bar) const;

    Sizes mLaidOutSizes;
    int mTabInFront = -1;
};
