// SPDX-License-Identifier: MIT
// The layout of the profiles tab.
#include "profiles/keyboardprofilescontroller.h"

#include "base/text.h"
#include "platform/checkbox.h"
#include "platform/pulldownbutton.h"
#include "platform/spacing.h"
#include "platform/symbol.h"
#include "profiles/qltableview.h"

#include <QHBoxLayout>
#include <QLabel>
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

QWidget *KeyboardProfilesController::buildApplicationHint()
{
    mApplicationHint = new QWidget;
    mApplicationHint->setObjectName("mApplicationHint"_L1);
    auto *text = new QLabel(localizedText("lkeyNoApplications"));
    text->setObjectName("mApplicationHintText"_L1);
    text->setWordWrap(true);
    mFirstApplication = new QPushButton(localizedText("lkeyAssignApplication"));
    mFirstApplication->setObjectName("mFirstApplication"_L1);
    connect(mFirstApplication, &QPushButton::clicked, this, [this] { runCommand(ProfileCommands::assignApplication); });
    auto *row = new QHBoxLayout(mApplicationHint);
    row->setContentsMargins({});
    row->setSpacing(Spacing::normal);
    row->addWidget(text, 1);
    row->addWidget(mFirstApplication);
    return mApplicationHint;
}

void KeyboardProfilesController::buildView()
{
    mView = new QWidget;
    mView->setObjectName("profilesView"_L1);
    buildTable();

    mAddProfile = new QPushButton(localizedText("lkeyAddProfile"));
    mAddProfile->setObjectName("mAddProfile"_L1);
    mAddProfile->setIcon(Symbols::icon(Symbol::add, u"list-add"_s));
    connect(mAddProfile, &QPushButton::clicked, this, [this] {
        mProfilesTableView->endEditing();
        clickAddProfile(mAddProfile);
    });
    mDeleteProfile = new QPushButton(localizedText("lkeyDeleteProfile"));
    mDeleteProfile->setObjectName("mDeleteProfile"_L1);
    mDeleteProfile->setIcon(Symbols::icon(Symbol::remove, u"edit-delete"_s));
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
    column->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    column->setSpacing(Spacing::normal);
    column->addWidget(mProfilesTableView, 1);
    column->addWidget(buildApplicationHint());
    column->addLayout(buttons);
}
