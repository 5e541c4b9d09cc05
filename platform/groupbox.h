// SPDX-License-Identifier: MIT
// A group box with a plain frame. Main thread only.
#pragma once

#include <QGroupBox>

/// Lies where the style's own lies, but draws its frame itself: the style's is a picture, whose loading brings in every
/// plugin for image formats, which takes a twentieth of the program's start. For boxes without a check box.
class GroupBox : public QGroupBox
{
    Q_OBJECT

public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};
