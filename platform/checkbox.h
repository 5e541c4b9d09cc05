// SPDX-License-Identifier: MIT
// A check box that stays visible on a dark desktop. Main thread only.
#pragma once

#include <QCheckBox>

/// The style draws the check box; this class adds an outline where that of the style is hardly visible.
class CheckBox : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};
