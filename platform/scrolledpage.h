// SPDX-License-Identifier: MIT
// A scroll area whose content fills it as long as the content's least size allows. Main thread only.
#pragma once

#include <QScrollArea>

/// Gives the content the place that there is. Below the content's least size, in which its parts are as low and narrow
/// as they can be, the page scrolls. QScrollArea itself scrolls as soon as a part cannot have the height that it
/// prefers for its width. The control that gets the focus is scrolled into view, unless a mouse button is down: the
/// control must not move while it is clicked.
class ScrolledPage : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes `content`, which has a layout, and its name for screen readers.
    explicit ScrolledPage(QWidget *content, QWidget *parent = nullptr);
    ~ScrolledPage() override;

    /// The size that the content prefers.
    QSize sizeHint() const override;
    /// Room for a control and the scroll bars, whatever the content needs.
    QSize minimumSizeHint() const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    /// Scrolls to `part` of the content: to all of it, or to its place for typing if the page is smaller than the part.
    void showPart(QWidget *part);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    [[nodiscard]] QSize leastSize(int width) const;
    void layOut();
    void followFocus(QWidget *focused);
};
