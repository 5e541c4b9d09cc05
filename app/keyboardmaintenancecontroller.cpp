// SPDX-License-Identifier: MIT
#include "app/keyboardmaintenancecontroller.h"

#include "base/text.h"
#include "platform/emptystate.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KeyboardMaintenanceController::KeyboardMaintenanceController(QObject *parent) : QObject(parent), mView(new QWidget)
{
    mView->setObjectName(u"maintenanceView"_s);
    auto *state = new EmptyState(Symbol::tick);
    state->label()->setText(localizedText("lkeyMaintenanceText"));
    state->label()->setObjectName(u"maintenanceText"_s);
    state->addDetail(localizedText("lkeyMaintenanceElsewhere"));
    auto *layout = new QVBoxLayout(mView);
    layout->addWidget(state);
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
