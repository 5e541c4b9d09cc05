// SPDX-License-Identifier: MIT
#include "platform/radiogroup.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>

RadioGroup::RadioGroup(QWidget *parent) : QWidget(parent), mGroup(new QButtonGroup(this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    connect(mGroup, &QButtonGroup::idClicked, this, &RadioGroup::rowClicked);
}

QRadioButton *RadioGroup::addRow(const QString &title)
{
    auto *button = new QRadioButton(title);
    mGroup->addButton(button, int(mGroup->buttons().size()));
    layout()->addWidget(button);
    return button;
}

int RadioGroup::selectedRow() const
{
    return mGroup->checkedId();
}

void RadioGroup::selectRow(int row)
{
    if (QAbstractButton *button = mGroup->button(row))
        button->setChecked(true);
}
