// SPDX-License-Identifier: MIT
// A group box with a plain frame. Main thread only.
#pragma once

#include <QGroupBox>

/// Has the geometry of the style's group box but draws the frame itself. The style's frame is a picture: loading it
/// loads every plug-in for image formats, which takes a twentieth of the program's start-up time. For boxes without a
/// check box.
class GroupBox : public QGroupBox
{
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};
