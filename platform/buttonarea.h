// SPDX-License-Identifier: MIT
// The area in which the user clicks to record mouse buttons. Main thread only.
#pragma once

#include <QLabel>
#include <QList>

/// Buttons have the numbers of macro events: 1 left, 2 right, 3 middle, 4 back, 5 forward, and so on to 9. Every
/// reported press is followed by its release. The release comes early if the pointer leaves the area, or if the window
/// stops being active.
class ButtonArea : public QLabel
{
    Q_OBJECT

public:
    explicit ButtonArea(QWidget *parent = nullptr);

    /// The number of a button in macro events; 0 for a button that they cannot name.
    [[nodiscard]] static int numberOf(Qt::MouseButton button);

Q_SIGNALS:
    void buttonChanged(int number, bool isDown);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override { mousePressEvent(event); }
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void releaseAll();

    QList<int> mHeld; // in the order of the presses
};
