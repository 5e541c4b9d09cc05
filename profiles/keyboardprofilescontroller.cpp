// SPDX-License-Identifier: MIT
#include "profiles/keyboardprofilescontroller.h"

#include "base/devicesettings.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "base/uniquename.h"
#include "platform/filepanels.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "profiles/applicationbinding.h"
#include "profiles/profiledelegate.h"
#include "profiles/profilefile.h"
#include "profiles/profileidentity.h"
#include "profiles/qltableview.h"

#include <QCheckBox>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;
using ApplicationBinding::applicationOf;
using ProfileCommands::maximumProfileCount;

namespace {

constexpr int nameColumn = 1;

} // namespace

KeyboardProfilesController::KeyboardProfilesController(QObject *parent) : QObject(parent)
{
    buildView();
}

KeyboardProfilesController::~KeyboardProfilesController()
{
    mProfilesTableView->setDataSource(nullptr);
    if (!mView->parent())
        delete mView;
}

void KeyboardProfilesController::awakeFromNib()
{
    mProfilesTableView->setKeyboardProfilesController(this);
    mDefaultProfileDict = {};
    mUserSettingsDict = {};
    mCurrentProfileDict = QVariantMap();
    mDeviceSettingsDict = {};
    mIsAddProfile = false;
    mNeedsUpdate = false;
    mIsFirstLaunch = true;
    mHasDeviceConnected = true;
    mNeedsProfileEditing = false;
    mIsRenamingProfile = false;
    setupSettingsButton();
}

// Queries

TableView *KeyboardProfilesController::profilesTableView() const
{
    return mProfilesTableView;
}

QVariantMap KeyboardProfilesController::profileAt(int row) const
{
    return row >= 0 && row < profileCount() ? mAllProfilesArray.at(row).toMap() : QVariantMap();
}

QVariantMap KeyboardProfilesController::selectedProfile() const
{
    return profileAt(mProfilesTableView->selectedRow());
}

QString KeyboardProfilesController::selectedProfileName() const
{
    return ProfileRecord::name(selectedProfile());
}

int KeyboardProfilesController::activeProfile() const
{
    return DeviceSettings(mDeviceSettingsDict).activeProfileIndex();
}

bool KeyboardProfilesController::canDelete() const
{
    return mHasDeviceConnected && profileCount() != 1;
}

QString KeyboardProfilesController::checkForDuplicateNameUsingDefaultName(const QVariantList &profiles,
                                                                          const QString &name) const
{
    return uniqueName(profiles, SettingsKeys::profileName, name);
}

QVariant KeyboardProfilesController::profile() const
{
    return profileIdentity(selectedProfile(), mAllProfilesArray, mProfilesTableView->selectedRow());
}

// Following the main controller

void KeyboardProfilesController::setMAllProfilesArray(const QVariantList &profiles)
{
    mAllProfilesArray = profiles;
    mIsListNew = true;
}

void KeyboardProfilesController::updateUISettings()
{
    if (!mCurrentProfileDict)
        return;
    if (!mIsAddProfile)
        showActiveProfile();
    mSheetSubject.endUnless(profile());
    // After an add, the new profile in the last row is ready to be named. Only once: another client may add the next
    // one.
    if (std::exchange(mNeedsProfileEditing, false))
        editName(profileCount() - 1, true);
    enableAddButtonByCount();
}

void KeyboardProfilesController::showActiveProfile()
{
    mProfilesTableView->deselectAll();
    showOnScreenDisplay();
    mProfilesTableView->selectRow(activeProfile(), mNeedsUpdate);
}

void KeyboardProfilesController::showOnScreenDisplay()
{
    mEnableOnScreenDisplay->setChecked(DeviceSettings(mDeviceSettingsDict).isProfileOsdOn());
}

void KeyboardProfilesController::refreshTableDisplay()
{
    mProfilesTableView->reloadData();
    showApplicationHint();
}

/// Shows the user how a profile follows an application, until one does.
void KeyboardProfilesController::showApplicationHint()
{
    mApplicationHint->setVisible(std::ranges::none_of(mAllProfilesArray, [](const QVariant &record) {
        return !ApplicationBinding::applicationOf(record.toMap()).isEmpty();
    }));
}

void KeyboardProfilesController::setControlsState(bool isEnabled)
{
    mHasDeviceConnected = isEnabled;
    if (!isEnabled)
        mSheetSubject.end();
    mProfilesTableView->setEnabled(isEnabled);
    enableAddButtonByCount();
    mSettingsProfile->setEnabled(isEnabled);
    mFirstApplication->setEnabled(isEnabled);
    mEnableOnScreenDisplay->setEnabled(isEnabled);
    mDeleteProfile->setEnabled(canDelete());
}

void KeyboardProfilesController::enableControlsForAddProfiles(bool isEnabled)
{
    // After a refused add there may be only one profile, which cannot be deleted.
    mDeleteProfile->setEnabled(isEnabled && canDelete());
    mSettingsProfile->setEnabled(isEnabled && mHasDeviceConnected);
    mFirstApplication->setEnabled(isEnabled && mHasDeviceConnected);
    mEnableOnScreenDisplay->setEnabled(isEnabled && mHasDeviceConnected);
    // The add button depends only on the count, even while an add is in progress.
    enableAddButtonByCount();
}

void KeyboardProfilesController::enableAddButtonByCount()
{
    mAddProfile->setEnabled(mHasDeviceConnected && profileCount() < maximumProfileCount);
}

// Adding and copying

void KeyboardProfilesController::clickAddProfile(QObject *)
{
    mIsAddProfile = true;
    mNeedsProfileEditing = true;
    mProfilesTableView->deselectAll();
    QVariantMap profile = mDefaultProfileDict;
    profile[SettingsKeys::profileName] =
        checkForDuplicateNameUsingDefaultName(mAllProfilesArray, ProfileFile::untitledName);
    mAllProfilesArray.append(profile);
    enableControlsForAddProfiles(false);
    addProfileWithSettings(profile);
    enableControlsForAddProfiles(true);
    mIsAddProfile = false;
}

void KeyboardProfilesController::copyProfile()
{
    const int row = mProfilesTableView->selectedRow();
    if (profileAt(row).isEmpty())
        return;
    mIsAddProfile = true;
    QVariantMap profile = profileAt(row);
    mProfilesTableView->deselectAll();
    profile[SettingsKeys::profileName] =
        checkForDuplicateNameUsingDefaultName(mAllProfilesArray, ProfileRecord::name(profile));
    mAllProfilesArray.append(profile);
    addProfileWithSettings(profile);
    mIsAddProfile = false;
}

/// Shows the record just appended, opens its name for editing and sends it.
void KeyboardProfilesController::addProfileWithSettings(const QVariantMap &profile)
{
    mIsListNew = false;
    mProfilesTableView->reloadData();
    selectLastRow();
    editName(profileCount() - 1, true);
    if (mProfileDelegate)
        mProfileDelegate->addNewProfileWithSettings(profile);
    if (!mIsListNew)
        return;
    if (isInLastRow(profile)) {
        selectLastRow();
        showOnScreenDisplay();
        editName(profileCount() - 1, true); // the new list has ended the edit
        return;
    }
    // It was refused, or another client has also added one. The changes of every tab go to the selected row.
    mProfilesTableView->selectRow(activeProfile());
}

/// True if the list ends with the record that was added, whose name was free.
bool KeyboardProfilesController::isInLastRow(const QVariantMap &added) const
{
    const auto isOfItsName = [&added](const QVariant &each) {
        return ProfileRecord::name(each.toMap()) == ProfileRecord::name(added);
    };
    return std::ranges::count_if(mAllProfilesArray, isOfItsName) == 1 && isOfItsName(mAllProfilesArray.last());
}

void KeyboardProfilesController::selectLastRow()
{
    mProfilesTableView->selectRow(profileCount() - 1);
    mProfilesTableView->scrollRowToVisible(profileCount() - 1);
}

void KeyboardProfilesController::editName(int row, bool selectText)
{
    mProfilesTableView->editColumnRow(nameColumn, row, selectText);
}

// Renaming

void KeyboardProfilesController::renameProfile(int row, const QString &newName)
{
    QVariantMap profile = profileAt(row);
    if (profile.isEmpty())
        return;
    // The profile moves to the end without its name: its own old name is then not a collision.
    profile[SettingsKeys::profileName] = QString();
    mAllProfilesArray.removeAt(row);
    mAllProfilesArray.append(profile);
    profile[SettingsKeys::profileName] = checkForDuplicateNameUsingDefaultName(mAllProfilesArray, newName);
    mUserSettingsDict = profile;
    // This replaces the profile that followed. Deliberate: the refresh after the rename brings the whole list.
    mAllProfilesArray[row] = profile;
    mNeedsProfileEditing = false;
    if (mProfileDelegate)
        mProfileDelegate->renameProfileWithProfileIDAndSettings(mProfilesTableView->selectedRow(), profile);
}

// Deleting and restoring

void KeyboardProfilesController::clickDeleteProfile(QObject *)
{
    if (mProfilesTableView->selectedRow() < 0)
        enableAddButtonByCount();
    else
        confirm("lkeyDeleteProfileAlertTitle", "lkeyDeleteProfileAlertDesc", confirmDelete);
}

void KeyboardProfilesController::confirm(const char *titleKey, const char *descriptionKey, SheetContext context)
{
    const QString name = selectedProfileName();
    const AlertTexts texts{localizedFormat(titleKey, {nameInAlert(name)}), localizedText(descriptionKey),
                           localizedText("lkeyOK"), localizedText("lkeyCancel")};
    Sheet *alert = showAlert(texts, mProfilesWindow, [self = QPointer(this), context](int returnCode) {
        if (self)
            self->sheetDidEndReturnCodeContextInfo(returnCode, context);
    });
    mSheetSubject.note(alert, profile());
}

void KeyboardProfilesController::sheetDidEndReturnCodeContextInfo(int returnCode, int context)
{
    if (context == confirmDelete && returnCode == alertFirstButtonReturn)
        deleteProfile();
    else if (context == confirmRestore && returnCode == alertFirstButtonReturn)
        restoreProfileToDefaultSettings();
    else if (context == exportProfile && returnCode == panelOK && mProfileSavePanel)
        exportProfileTo(mProfileSavePanel->chosenPath());
}

void KeyboardProfilesController::deleteProfile()
{
    if (profileCount() > 1 && mProfilesTableView->selectedRow() >= 0) {
        mNeedsUpdate = true;
        mNeedsProfileEditing = false;
        mProfilesTableView->endEditing();
        editName(profileCount() - 1, false); // the reload below ends this edit
        if (mProfileDelegate)
            mProfileDelegate->deleteProfileWithProfileID(mProfilesTableView->selectedRow());
        mProfilesTableView->reloadData();
        mProfilesTableView->setFocus();
        mNeedsUpdate = false;
    }
    enableAddButtonByCount();
}

void KeyboardProfilesController::restoreProfileToDefaultSettings()
{
    const QVariantMap selected = selectedProfile();
    if (selected.isEmpty())
        return;
    QVariantMap profile = mDefaultProfileDict;
    profile[SettingsKeys::profileName] = ProfileRecord::name(selected);
    if (mProfileDelegate)
        mProfileDelegate->updateProfileWithSettings(profile);
}

// Single settings

void KeyboardProfilesController::tickEnableOnScreenDisplay(QObject *)
{
    // Without a selected row, the first profile would get the change.
    if (selectedProfile().isEmpty())
        showOnScreenDisplay();
    else
        updateValueOfSetting(mEnableOnScreenDisplay->isChecked() ? 1 : 0, SettingsKeys::profileOsdOn);
}

void KeyboardProfilesController::updateValueOfSetting(int value, const QString &key)
{
    if (mProfileDelegate)
        mProfileDelegate->updateProfileWithSettings({{key, value}});
}

void KeyboardProfilesController::setAutoSwitch(int row, int value)
{
    if (row != activeProfile() && mProfileDelegate)
        mProfileDelegate->switchProfileWithID(row);
    if (mProfilesTableView->selectedRow() != row) {
        mProfilesTableView->reloadData(); // the switch was refused; the change would go to the selected row
        return;
    }
    if (value == 0) {
        updateValueOfSetting(0, SettingsKeys::autoSwitchOn);
    } else {
        mTableObjectValue = value;
        // Only a profile with an application can have automatic switching.
        if (!applicationOf(selectedProfile()).isEmpty())
            updateValueOfSetting(mTableObjectValue, SettingsKeys::autoSwitchOn);
        else
            loadPanelForIdentifier(chooseApplication);
    }
    mProfilesTableView->reloadData();
}

// The table

int KeyboardProfilesController::numberOfRowsInTableView(TableView *)
{
    mDeleteProfile->setEnabled(canDelete());
    return profileCount();
}

QVariant KeyboardProfilesController::tableViewObjectValueForTableColumnRow(TableView *, const QString &column, int row)
{
    if (row < 0 || row >= profileCount())
        return {};
    const QVariantMap profile = profileAt(row);
    if (column == "id"_L1)
        return row + 1;
    if (column == "name"_L1)
        return ProfileRecord::name(profile);
    if (column == "application"_L1)
        return applicationOf(profile);
    return ProfileRecord::autoSwitchValue(profile);
}

void KeyboardProfilesController::tableViewSetObjectValueForTableColumnRow(TableView *, const QVariant &value,
                                                                          const QString &column, int row)
{
    mProfilesTableView->selectRow(mProfilesTableView->selectedRow());
    if (column == "name"_L1) {
        if (value.userType() == QMetaType::QString && !value.toString().isEmpty())
            renameProfile(row, value.toString());
    } else if (column == "auto switch"_L1) {
        setAutoSwitch(row, value.toInt());
    }
}

void KeyboardProfilesController::tableViewSelectionDidChange(TableView *)
{
    const int row = mProfilesTableView->selectedRow();
    if (row >= 0 && row < profileCount() && !mIsAddProfile) {
        if (!mIsFirstLaunch) {
            if (row != activeProfile()) {
                mNeedsProfileEditing = false;
                if (mProfileDelegate)
                    mProfileDelegate->switchProfileWithID(row);
            }
        } else if (!mNeedsUpdate) {
            mProfilesTableView->selectRow(activeProfile());
        }
    }
    enableAddButtonByCount();
    mIsFirstLaunch = false;
}

std::optional<TableCell> KeyboardProfilesController::tableViewDataCellForTableColumnRow(TableView *,
                                                                                        const QString &column, int)
{
    if (column == "auto switch"_L1)
        return TableCell::checkBox;
    return std::nullopt;
}
