// SPDX-License-Identifier: MIT
#include "app/keyboardmaintenancecontroller.h"

#include "base/text.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KeyboardMaintenanceController::KeyboardMaintenanceController(QObject *parent) : QObject(parent), mView(new QWidget)
{
    mView->setObjectName(u"maintenanceView"_s);
    auto *text = new QLabel(localizedText("lkeyMaintenanceText"));
    text->setObjectName(u"maintenanceText"_s);
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    auto *layout = new QVBoxLayout(mView);
    layout->setContentsMargins(48, 48, 48, 48);
    layout->addWidget(text);
    layout->addStretch();
}

KeyboardMaintenanceController::~KeyboardMaintenanceController()
{
    if (!mView->parent())
        delete mView;
}

void KeyboardMaintenanceController::setControlsState(bool enabled)
{
    mView->setEnabled(enabled);
}
