// SPDX-License-Identifier: MIT
// A check box that is seen on a dark desktop too. Main thread only.
#pragma once

#include <QCheckBox>

/// Drawn by the style, with an outline of its own where that of the style can hardly be seen.
class CheckBox : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};
