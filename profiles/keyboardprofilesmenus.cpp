// SPDX-License-Identifier: MIT
// The profiles tab's commands: the gear button that lists them, when each can be chosen, and its effect.
#include "profiles/keyboardprofilescontroller.h"

#include "platform/pulldownbutton.h"
#include "profiles/applicationbinding.h"
#include "profiles/qltableview.h"

#include <QAction>

using namespace Qt::StringLiterals;
using ApplicationBinding::applicationOf;

void KeyboardProfilesController::setupSettingsButton()
{
    mSettingsProfile->setImages(u"GearOn.png"_s, u"GearOff.png"_s);
    mSettingsProfile->setCommands(
        ProfileCommands::all(), [this](const QAction *item) { selectMenuItem(item); },
        [this](const QAction *item) { return validateMenuItem(item); });
}

ProfileCommands::State KeyboardProfilesController::commandState() const
{
    return {mProfilesTableView->selectedRow(), profileCount(), !applicationOf(selectedProfile()).isEmpty()};
}

bool KeyboardProfilesController::validateMenuItem(const QAction *item) const
{
    return ProfileCommands::isEnabledInGearMenu(item->data().toInt(), commandState());
}

void KeyboardProfilesController::selectMenuItem(const QAction *item)
{
    runCommand(item->data().toInt());
}

void KeyboardProfilesController::runCommand(int tag)
{
    const int row = mProfilesTableView->selectedRow();
    mProfilesTableView->endEditing(); // first writes a name that is being typed
    if (mProfilesTableView->selectedRow() != row)
        return; // another profile has become the active one; the command was not meant for it
    switch (tag) {
    case ProfileCommands::rename:
        editName(mProfilesTableView->selectedRow(), true);
        mIsRenamingProfile = true;
        break;
    case ProfileCommands::newProfile: clickAddProfile(nullptr); break;
    case ProfileCommands::importProfile: loadPanelForIdentifier(chooseProfileFile); break;
    case ProfileCommands::exportProfile: loadSaveAsPanel(); break;
    case ProfileCommands::deleteProfile:
        if (std::exchange(mIsRenamingProfile, false))
            reselectRow();
        clickDeleteProfile(nullptr);
        break;
    case ProfileCommands::copy: copyProfile(); break;
    case ProfileCommands::assignApplication: loadPanelForIdentifier(chooseApplication); break;
    case ProfileCommands::removeApplication: removeApplication(); break;
    case ProfileCommands::restoreDefault:
        if (mProfilesTableView->selectedRow() >= 0)
            confirm("lkeyRestoreDefaultTitle", "lkeyRestoreDefaultDesc", confirmRestore);
        break;
    default: break;
    }
}

void KeyboardProfilesController::reselectRow()
{
    const int row = mProfilesTableView->selectedRow();
    mProfilesTableView->deselectAll();
    mProfilesTableView->selectRow(row);
}
