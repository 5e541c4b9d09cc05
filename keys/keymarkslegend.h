// SPDX-License-Identifier: MIT
// The row under the keyboard picture that explains the look of selected, mapped and unassignable keys. Main thread
// only.
#pragma once

#include <QWidget>

class KeyMarksLegend : public QWidget
{
    Q_OBJECT

public:
    explicit KeyMarksLegend(QWidget *parent = nullptr);
};
