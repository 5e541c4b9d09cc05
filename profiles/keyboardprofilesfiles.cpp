// SPDX-License-Identifier: MIT
// The profiles tab's panels: profile files, and the application to which a profile is bound.
#include "profiles/keyboardprofilescontroller.h"

#include "base/profilerecord.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "platform/applicationchooser.h"
#include "platform/applicationinformation.h"
#include "platform/filepanels.h"
#include "platform/sheet.h"
#include "profiles/applicationbinding.h"
#include "profiles/profiledelegate.h"
#include "profiles/profilefile.h"
#include "profiles/qltableview.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

ApplicationChooser *KeyboardProfilesController::applicationChooser() const
{
    return mApplicationChooser;
}

OpenPanel *KeyboardProfilesController::profileFileBrowserPanel() const
{
    return mProfileFileBrowserPanel;
}

SavePanel *KeyboardProfilesController::profileSavePanel() const
{
    return mProfileSavePanel;
}

void KeyboardProfilesController::loadPanelForIdentifier(int identifier)
{
    delete mApplicationChooser.data();
    delete mProfileFileBrowserPanel.data();
    if (identifier == chooseApplication)
        openApplicationChooser();
    else
        openFilePanel(identifier);
}

void KeyboardProfilesController::openApplicationChooser()
{
    mApplicationChooser = new ApplicationChooser(ApplicationList::Windows::all, mProfilesWindow);
    mApplicationChooser->setObjectName("mApplicationChooser"_L1);
    connect(mApplicationChooser, &QDialog::finished, this, [this](int returnCode) {
        if (returnCode == ApplicationChooser::otherReturn)
            openFilePanel(chooseApplication);
        else
            applicationChoiceDidEnd(returnCode, mApplicationChooser->chosenInformation(),
                                    mApplicationChooser->chosenTitle());
    });
    mApplicationChooser->open();
    mSheetSubject.note(mApplicationChooser, profile());
}

void KeyboardProfilesController::openFilePanel(int identifier)
{
    OpenPanel::Options options;
    if (identifier == chooseApplication)
        options = {localizedText("lkeyChooseApplication"), localizedText("lkeyApplicationFiles"),
                   ApplicationInformation::fileTypes(), ApplicationInformation::startFolder()};
    else if (identifier == chooseProfileFile)
        options = {localizedText("lkeyImportProfile"),
                   localizedText("lkeyProfileFiles"),
                   {ProfileFile::suffix},
                   documentsFolder()};
    mProfileFileBrowserPanel = new OpenPanel(options, mProfilesWindow);
    mProfileFileBrowserPanel->setObjectName("mProfileFileBrowserPanel"_L1);
    connect(mProfileFileBrowserPanel, &QDialog::finished, this, [this, identifier](int returnCode) {
        openPanelDidEndReturnCodeContextInfo(mProfileFileBrowserPanel, returnCode, identifier);
    });
    mProfileFileBrowserPanel->open();
    // An import makes a profile of its own, whichever is selected.
    mSheetSubject.note(mProfileFileBrowserPanel, identifier == chooseApplication ? profile() : QVariant());
}

void KeyboardProfilesController::loadSaveAsPanel()
{
    if (mProfilesTableView->selectedRow() < 0)
        return;
    delete mProfileSavePanel.data();
    const QString name = selectedProfileName();
    mProfileSavePanel = new SavePanel({localizedText("lkeyExportProfile"), localizedText("lkeyProfileFiles"),
                                       ProfileFile::suffix, documentsFolder(), name},
                                      mProfilesWindow);
    mProfileSavePanel->setObjectName("mProfileSavePanel"_L1);
    connect(mProfileSavePanel, &QDialog::finished, this,
            [this](int returnCode) { sheetDidEndReturnCodeContextInfo(returnCode, exportProfile); });
    mProfileSavePanel->open();
    mSheetSubject.note(mProfileSavePanel, profile());
}

void KeyboardProfilesController::openPanelDidEndReturnCodeContextInfo(OpenPanel *panel, int returnCode, int context)
{
    if (context == chooseProfileFile && returnCode == panelOK)
        importProfileFrom(panel->chosenPath());
    if (context == chooseApplication)
        applicationChoiceDidEnd(returnCode, ApplicationInformation::read(panel->chosenPath()), panel->chosenPath());
}

void KeyboardProfilesController::applicationChoiceDidEnd(int returnCode, const std::optional<QVariantMap> &information,
                                                         const QString &name)
{
    if (returnCode == panelOK && information)
        bindApplication(*information, name);
    else if (returnCode == panelOK)
        report(StatusReport::Event::notAnApplication, name);
    else if (returnCode == panelCancel)
        updateValueOfSetting(0, SettingsKeys::autoSwitchOn);
    mProfilesTableView->reloadData();
}

void KeyboardProfilesController::exportProfileTo(const QString &path)
{
    const QVariantMap profile = selectedProfile();
    if (profile.isEmpty() || path.isEmpty())
        return;
    const Result<void> written = PropertyList::writePropertyListFile(path, profile);
    if (!written)
        report(StatusReport::Event::exportFailed, path, written.error().message);
}

void KeyboardProfilesController::importProfileFrom(const QString &path)
{
    const auto record = PropertyList::readPropertyListFile(path);
    if (!record) {
        const bool isUnreadable = record.error().cause == PropertyList::ReadError::Cause::unreadable;
        return report(isUnreadable ? StatusReport::Event::importFailed : StatusReport::Event::notAProfile, path,
                      record.error().message);
    }
    const QVariantMap profile = ProfileFile::importedRecord(*record, mAllProfilesArray);
    mProfilesTableView->deselectAll();
    mAllProfilesArray.append(profile);
    if (mProfileDelegate)
        mProfileDelegate->addNewProfileWithSettings(profile);
    mProfilesTableView->reloadData();
    // If the daemon refused it, the last row is another profile, and selecting that would switch to it.
    if (isInLastRow(profile))
        selectLastRow();
}

void KeyboardProfilesController::report(StatusReport::Event event, const QString &path, const QString &reason) const
{
    if (mProfileDelegate)
        mProfileDelegate->report({.event = event, .subject = QFileInfo(path).fileName(), .reason = reason});
}

/// Also turns automatic switching on, in the same request.
void KeyboardProfilesController::bindApplication(const QVariantMap &information, const QString &name)
{
    const QVariantMap appInfo = ApplicationBinding::bound(ProfileRecord::appInfo(selectedProfile()), information);
    if (!ApplicationBinding::namesAnApplication(appInfo))
        return report(StatusReport::Event::notAnApplication, name);
    mNeedsUpdate = false;
    if (mProfileDelegate)
        mProfileDelegate->updateProfileWithSettings(
            {{SettingsKeys::autoSwitchOn, 1}, {SettingsKeys::appInfo, appInfo}});
    mNeedsUpdate = true;
    showOtherProfileFollowing(appInfo);
}

/// Reports the first other profile that follows the application of `appInfo`, once the selected profile has it.
void KeyboardProfilesController::showOtherProfileFollowing(const QVariantMap &appInfo)
{
    const int row = mProfilesTableView->selectedRow();
    if (ProfileRecord::appInfo(profileAt(row)) != appInfo)
        return; // the daemon refused the change
    const std::optional<int> other = ApplicationBinding::otherProfileFollowing(mAllProfilesArray, row);
    if (!other)
        return;
    const QString otherName = nameInAlert(ProfileRecord::name(profileAt(*other)));
    const QString application = nameInAlert(ApplicationBinding::applicationOf(profileAt(row)));
    showAlert({localizedFormat("lkeySharedApplicationTitle", {otherName, application}),
               localizedText("lkeySharedApplicationDesc"),
               localizedText("lkeyOK"),
               {}},
              mProfilesWindow);
}

void KeyboardProfilesController::removeApplication()
{
    if (mProfilesTableView->selectedRow() < 0)
        return;
    const QVariantMap appInfo = ApplicationBinding::unbound(ProfileRecord::appInfo(selectedProfile()));
    if (mProfileDelegate)
        mProfileDelegate->updateProfileWithSettings(
            {{SettingsKeys::autoSwitchOn, false}, {SettingsKeys::appInfo, appInfo}});
    mProfilesTableView->reloadData();
}
