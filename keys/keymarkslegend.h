// SPDX-License-Identifier: MIT
// The row under the keyboard picture that explains how selected, mapped and unassignable keys look. Main thread only.
#pragma once

#include <QWidget>

class KeyMarksLegend : public QWidget
{
    Q_OBJECT

public:
    explicit KeyMarksLegend(QWidget *parent = nullptr);
};
