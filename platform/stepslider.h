// SPDX-License-Identifier: MIT
// A horizontal slider with few steps. A click on the groove or a tick selects the nearest step; the base class would
// move one step towards the click. Without the focus, the slider leaves the wheel to the page around it: a user who
// scrolls must not change a setting by passing over it. Main thread only.
#pragma once

#include <QSlider>
#include <QStyle>

class StepSlider : public QSlider
{
    Q_OBJECT

public:
    explicit StepSlider(QWidget *parent = nullptr);

    /// Releases the handle if the user is dragging it. The mouse then moves nothing until it is pressed again. Call
    /// this before disabling the slider, which alone would only appear to end the drag.
    void endDrag();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] QRect place(QStyle::SubControl part) const;
};
