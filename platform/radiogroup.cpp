// SPDX-License-Identifier: MIT
#include "platform/radiogroup.h"

#include "platform/indicatoroutline.h"

#include <QButtonGroup>
#include <QPainter>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QVBoxLayout>

namespace {

/// The style draws the button; this class adds an outline where that of the style is hardly visible.
class RadioButton : public QRadioButton
{
public:
    using QRadioButton::QRadioButton;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QRadioButton::paintEvent(event);
        QStyleOptionButton option;
        initStyleOption(&option);
        QPainter painter(this);
        IndicatorOutline::drawOnDark(painter, this,
                                     style()->subElementRect(QStyle::SE_RadioButtonIndicator, &option, this),
                                     IndicatorOutline::Shape::circle);
    }
};

} // namespace

RadioGroup::RadioGroup(QWidget *parent) : QWidget(parent), mGroup(new QButtonGroup(this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    connect(mGroup, &QButtonGroup::idClicked, this, &RadioGroup::rowClicked);
}

QRadioButton *RadioGroup::addRow(const QString &title)
{
    auto *button = new RadioButton(title);
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
