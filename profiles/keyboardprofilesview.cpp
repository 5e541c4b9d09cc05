// SPDX-License-Identifier: MIT
// The layout of the profiles tab.
#include "profiles/keyboardprofilescontroller.h"

#include "base/text.h"
#include "platform/checkbox.h"
#include "platform/pulldownbutton.h"
#include "profiles/qltableview.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

void KeyboardProfilesController::buildTable()
{
    mProfilesTableView = new QLTableView;
    mProfilesTableView->setObjectName("mProfilesTableView"_L1);
    mProfilesTableView->setAccessibleName(localizedText("lkeyProfiles"));
    mProfilesTableView->addColumn({u"id"_s, localizedText("lkeyProfileColumnId"), TableCell::text, false, false,
                                   Qt::AlignTrailing | Qt::AlignVCenter});
    mProfilesTableView->addColumn({u"name"_s, localizedText("lkeyProfileColumnName"), TableCell::text, true, true});
    mProfilesTableView->addColumn(
        {u"application"_s, localizedText("lkeyProfileColumnApplication"), TableCell::text, false, true});
    mProfilesTableView->addColumn({u"auto switch"_s, localizedText("lkeyProfileColumnAutoSwitch"), TableCell::text,
                                   false, false, Qt::AlignCenter});
    // A click beside the rows would leave no profile selected, but the changes of the other tabs go to the selected
    // one.
    mProfilesTableView->setAllowsEmptySelection(false);
}

void KeyboardProfilesController::buildView()
{
    mView = new QWidget;
    mView->setObjectName("profilesView"_L1);
    buildTable();

    mAddProfile = new QPushButton(localizedText("lkeyAddProfile"));
    mAddProfile->setObjectName("mAddProfile"_L1);
    connect(mAddProfile, &QPushButton::clicked, this, [this] {
        mProfilesTableView->endEditing();
        clickAddProfile(mAddProfile);
    });
    mDeleteProfile = new QPushButton(localizedText("lkeyDeleteProfile"));
    mDeleteProfile->setObjectName("mDeleteProfile"_L1);
    connect(mDeleteProfile, &QPushButton::clicked, this, [this] {
        mProfilesTableView->endEditing();
        clickDeleteProfile(mDeleteProfile);
    });
    mSettingsProfile = new PulldownButton;
    mSettingsProfile->setObjectName("mSettingsProfile"_L1);
    mSettingsProfile->setAccessibleName(localizedText("lkeyProfileCommands"));
    mSettingsProfile->setToolTip(localizedText("lkeyProfileCommands"));
    mEnableOnScreenDisplay = new CheckBox(localizedText("lkeyEnableOnScreenDisplay"));
    mEnableOnScreenDisplay->setObjectName("mEnableOnScreenDisplay"_L1);
    connect(mEnableOnScreenDisplay, &QCheckBox::clicked, this,
            [this] { tickEnableOnScreenDisplay(mEnableOnScreenDisplay); });

    // The data source is set last: counting the rows also enables the delete button.
    mProfilesTableView->setDataSource(this);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(mAddProfile);
    buttons->addWidget(mDeleteProfile);
    buttons->addWidget(mSettingsProfile);
    buttons->addStretch();
    buttons->addWidget(mEnableOnScreenDisplay);

    auto *column = new QVBoxLayout(mView);
    column->setContentsMargins(20, 20, 20, 20);
    column->setSpacing(12);
    column->addWidget(mProfilesTableView, 1);
    column->addLayout(buttons);
}
