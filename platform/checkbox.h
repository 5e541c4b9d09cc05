// SPDX-License-Identifier: MIT
// A check box that is seen on a dark desktop too. Main thread only.
#pragma once

#include <QCheckBox>

/// Drawn by the style. Where the desktop is dark, styles draw the outline darker still, so that an unticked box can
/// hardly be seen: there an enabled box gets a light outline over the style's own.
class CheckBox : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};
