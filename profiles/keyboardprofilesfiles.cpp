// SPDX-License-Identifier: MIT
// The profiles tab's panels: profile files, and the application to which a profile is bound.
#include "profiles/keyboardprofilescontroller.h"

#include "base/profilerecord.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "platform/applicationinformation.h"
#include "platform/filepanels.h"
#include "profiles/applicationbinding.h"
#include "profiles/profiledelegate.h"
#include "profiles/profilefile.h"
#include "profiles/qltableview.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

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
    OpenPanel::Options options;
    if (identifier == chooseApplication)
        options = {localizedText("lkeyChooseApplication"), localizedText("lkeyApplicationFiles"),
                   ApplicationInformation::fileTypes(), ApplicationInformation::startFolder()};
    else if (identifier == chooseProfileFile)
        options = {localizedText("lkeyImportProfile"),
                   localizedText("lkeyProfileFiles"),
                   {ProfileFile::suffix},
                   documentsFolder()};
    delete mProfileFileBrowserPanel.data();
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
    if (context != chooseApplication)
        return;
    if (returnCode == panelOK)
        bindApplication(panel->chosenPath());
    else if (returnCode == panelCancel)
        updateValueOfSetting(0, SettingsKeys::autoSwitchOn);
    mProfilesTableView->reloadData();
}

void KeyboardProfilesController::exportProfileTo(const QString &path)
{
    const QVariantMap profile = selectedProfile();
    if (profile.isEmpty() || path.isEmpty())
        return;
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(profile);
    if (!data || !PropertyList::writeFileAtomically(path, *data))
        report(StatusReport::Event::exportFailed, path);
}

void KeyboardProfilesController::importProfileFrom(const QString &path)
{
    const std::optional<QVariantMap> record = PropertyList::readPropertyListFile(path);
    if (!record)
        return report(StatusReport::Event::notAProfile, path);
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

void KeyboardProfilesController::report(StatusReport::Event event, const QString &path) const
{
    if (mProfileDelegate)
        mProfileDelegate->report({.event = event, .subject = QFileInfo(path).fileName()});
}

/// Also turns automatic switching on, in the same request.
void KeyboardProfilesController::bindApplication(const QString &path)
{
    const std::optional<QVariantMap> information = ApplicationInformation::read(path);
    if (!information)
        return report(StatusReport::Event::notAnApplication, path);
    const QVariantMap appInfo = ApplicationBinding::bound(ProfileRecord::appInfo(selectedProfile()), *information);
    if (!ApplicationBinding::namesAnApplication(appInfo))
        return report(StatusReport::Event::notAnApplication, path);
    mNeedsUpdate = false;
    if (mProfileDelegate)
        mProfileDelegate->updateProfileWithSettings(
            {{SettingsKeys::autoSwitchOn, 1}, {SettingsKeys::appInfo, appInfo}});
    mNeedsUpdate = true;
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
