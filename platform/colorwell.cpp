// SPDX-License-Identifier: MIT
#include "platform/colorwell.h"

#include <QColorDialog>
#include <QPainter>
#include <QStyleOptionButton>

using namespace Qt::StringLiterals;

ColorWell::ColorWell(QWidget *parent) : QAbstractButton(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleDescription(mColor.name());
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openDialog);
}

void ColorWell::setColor(const QColor &color)
{
    if (!color.isValid())
        return;
    mColor = color;
    setAccessibleDescription(color.name());
    update();
}

QSize ColorWell::sizeHint() const
{
    return {fontMetrics().height() * 3, fontMetrics().height() + 12};
}

void ColorWell::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    option.initFrom(this);
    option.state |= isDown() ? QStyle::State_Sunken : QStyle::State_Raised;
    QPainter painter(this);
    style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : 0.35);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(mColor);
    painter.drawRoundedRect(QRectF(rect()).adjusted(5.5, 5.5, -5.5, -5.5), 2, 2);
    if (hasFocus()) {
        painter.setOpacity(1);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 3, 3);
    }
}

void ColorWell::openDialog()
{
    if (mDialog)
        return;
    mDialog = new QColorDialog(mColor, this);
    mDialog->setObjectName("colorDialog"_L1);
    mDialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(mDialog, &QColorDialog::colorSelected, this, [this](const QColor &color) {
        setColor(color);
        emit colorPicked(color);
    });
    mDialog->open();
    emit dialogOpened(mDialog);
}
