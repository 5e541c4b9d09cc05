// SPDX-License-Identifier: MIT
// One column of radio buttons, addressed by row. Main thread only.
#pragma once

#include <QWidget>

class QButtonGroup;
class QRadioButton;

class RadioGroup : public QWidget
{
    Q_OBJECT

public:
    explicit RadioGroup(QWidget *parent = nullptr);

    /// Adds a row at the end.
    QRadioButton *addRow(const QString &title);

    [[nodiscard]] int selectedRow() const; ///< -1 for none
    /// Selects `row` without emitting a signal. Ignores a row that does not exist.
    void selectRow(int row);

Q_SIGNALS:
    /// The user chose a row, possibly the one already selected.
    void rowClicked(int row);

private:
    QButtonGroup *mGroup;
};
