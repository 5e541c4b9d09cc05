// SPDX-License-Identifier: MIT
// A horizontal slider of few steps: a click on the groove or on a tick goes to the step that is nearest, where the base
// class would go one step towards it. Main thread only.
#pragma once

#include <QSlider>
#include <QStyle>

class StepSlider : public QSlider
{
    Q_OBJECT

public:
    explicit StepSlider(QWidget *parent = nullptr);

    /// Lets go of a handle that the person is dragging, if so: the mouse moves nothing until it is pressed again. To be
    /// called before the slider is disabled, which alone would only look like it.
    void endDrag();

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] QRect place(QStyle::SubControl part) const;
};
