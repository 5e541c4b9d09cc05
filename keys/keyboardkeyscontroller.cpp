// SPDX-License-Identifier: MIT
// Life cycle, selection of a key and redrawing. The pop-ups are in keyboardkeysassignment.cpp, the widgets in
// keyboardkeysview.cpp. Single-key capture, game mode and the function-key notice are in keyboardkeyscapture.cpp, the
// search and the menu of a key in keyboardkeyssearch.cpp. Several selected keys and the clipboard are in
// keyboardkeysselection.cpp, the content of the card in keyboardkeyscard.cpp.
#include "keys/keyboardkeyscontroller.h"

#include "base/devicesettings.h"
#include "base/profilerecord.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "base/resources.h"
#include "base/settingskeys.h"
#include "base/visibletext.h"
#include "keys/keyboardpicture.h"
#include "keys/keycard.h"
#include "keys/keylayout.h"
#include "keys/keymarkslegend.h"
#include "keys/keysearchbar.h"
#include "keys/mappingcleanup.h"
#include "keys/newmacro.h"
#include "platform/distributednotificationcenter.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "profiles/profileidentity.h"

#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

constexpr auto firstKeyOfAll = "41"_L1; // Esc, when no key was ever selected

QVariantMap readKestraPlist()
{
    return PropertyList::readPropertyListFile(kestraPlistPath()).valueOr({});
}

} // namespace

KeyboardKeysController::KeyboardKeysController(QObject *parent) : QObject(parent)
{
    buildView();
    connectActions();
}

KeyboardKeysController::~KeyboardKeysController()
{
    if (!mView->parent())
        delete mView;
}

void KeyboardKeysController::awakeFromNib()
{
    setPlaybackVisible(false);
    mFunctionKeysInfoLabel->hide();
    mFunctionKeysInfoImage->hide();
    mKeysNotificationCenter = &DistributedNotificationCenter::defaultCenter();
    mKeysCurrentProfileDict.clear();
    mDeviceSettingsDict.clear();
    mDefaultDict.clear();
    mAllProfilesArray.clear();
    mAllMacrosArray.clear();
    mDevicePlist.clear();
    mSelectedKey.clear();
    mFN->setEnabled(false);
    mMacro->setEnabled(false);
    mEject->setEnabled(false);
    mIsFirstLaunch = true;
    mGameMode = false;
    mIsFunctionKeySelected = false;
    registerNotification();
}

#define KESTRA_KEY(outlet, action, code, functionKeyName)                                                              \
    void KeyboardKeysController::action(QObject *)                                                                     \
    {                                                                                                                  \
        selectKey(outlet, code, functionKeyName##_L1.size() > 0);                                                      \
    }
// Deliberate: these keys can never be selected.
#define KESTRA_FIXED_KEY(outlet, action, disabledAtStart)                                                              \
    void KeyboardKeysController::action(QObject *) {}
#include "keys/keytable.inc"

void KeyboardKeysController::clickKeyboardButton(QObject *) {}

void KeyboardKeysController::selectKey(KeyButton *button, int code, bool isFunctionKey)
{
    mIsFunctionKeySelected = isFunctionKey;
    mPreviousButton = mCurrentButton;
    mPreviousButtonValue = mCurrentButtonValue;
    setupPreviousKey();
    mSelectedKey = KeyLayout::codeText(code);
    setOtherSelectedKeys({});
    updatePopUpSelection();
    button->setButtonType(KeyButton::Type::onOff);
    button->setNextState();
    mCurrentButton = button;
    mCurrentButtonValue = mSelectedKey;
    mPicture->setTabStop(button);
}

void KeyboardKeysController::setupPreviousKey()
{
    if (!mPreviousButton)
        return;
    mPreviousButton->setButtonType(KeyButton::Type::momentaryPushIn);
    if (isKeyMapped(KeyLayout::codeValue(mPreviousButtonValue)))
        mPreviousButton->highlight(true);
}

void KeyboardKeysController::updateCurrentButton(int code)
{
    if (const KeyRow *row = KeyLayout::rowForCode(code)) {
        mCurrentButton = mPicture->button(row->outlet);
        mCurrentButtonValue = KeyLayout::codeText(code);
        mPicture->setTabStop(mCurrentButton);
    }
    if (mCurrentButton)
        mCurrentButton->setButtonType(KeyButton::Type::onOff);
}

KeyMappings::Entry KeyboardKeysController::entryForKey(int code) const
{
    return KeyMappings::entryForKey(mKeysCurrentProfileDict, code);
}

int KeyboardKeysController::selectedCode() const
{
    return KeyLayout::codeValue(mSelectedKey);
}

bool KeyboardKeysController::isKeyMapped(int code) const
{
    return entryForKey(code).isMapped();
}

QVariant KeyboardKeysController::profile() const
{
    const int active = DeviceSettings(mDeviceSettingsDict).activeProfileIndex();
    return profileIdentity(mKeysCurrentProfileDict, mAllProfilesArray, active);
}

std::optional<QString> KeyboardKeysController::activeProfileName() const
{
    const int active = DeviceSettings(mDeviceSettingsDict).activeProfileIndex();
    return ProfileRecord::givenName(mAllProfilesArray.value(active).toMap());
}

void KeyboardKeysController::updateUISettings()
{
    mSheetSubject.endUnless(profile());
    mNewMacro->keepUnless(profile());
    mGameMode = DeviceSettings(mDeviceSettingsDict).isGameModeOn();
    mProfileNameLabel->setText(visibleText(ProfileRecord::name(mKeysCurrentProfileDict), u' '));
    mPicture->light().show(Backlight::settingsOf(mKeysCurrentProfileDict));
    setupProfileSubMenu();
    setupMacroSubMenu();
    resetKeys();
    if (mIsFirstLaunch) {
        checkLastSelectedKey();
        mIsFirstLaunch = false;
    } else {
        updatePopUpSelection();
    }
    checkKeyAssignment();
    updateDescriptions();
}

void KeyboardKeysController::resetKeys()
{
    for (const KeyRow &row : KeyLayout::selectableKeys())
        mPicture->button(row.outlet)->highlight(false);
}

void KeyboardKeysController::checkKeyAssignment()
{
    for (const KeyRow &row : KeyLayout::selectableKeys())
        if (row.code != selectedCode() && isKeyMapped(row.code))
            mPicture->button(row.outlet)->highlight(true);
}

void KeyboardKeysController::setControlsState(bool isEnabled)
{
    mHasDeviceConnected = isEnabled;
    mNewMacro->setKeyboardAttached(isEnabled);
    if (!isEnabled) {
        mSheetSubject.end();
        updatePopUpSelection(); // undoes the choice that opened the ended sheet or panel
    }
    for (KeyButton *button : mPicture->buttons())
        button->setEnabled(isEnabled);
    mPicture->update();
    mMarksLegend->setEnabled(isEnabled);
    mKeyCard->setEnabled(isEnabled);
    mSearchBar->setEnabled(isEnabled);
    mAssignFunction->setEnabled(isEnabled);
    mMacroPlaybackPopUp->setEnabled(isEnabled);
    // A disabled label has the disabled text colour of the palette in use.
    mAssignLabel->setEnabled(isEnabled);
    mPlaybackOptionLabel->setEnabled(isEnabled);
}

void KeyboardKeysController::checkLastSelectedKey()
{
    mDevicePlist = readKestraPlist().value(SettingsKeys::deviceInfo).toMap();
    mSelectedKey = mDevicePlist.value(SettingsKeys::lastSelectedKey).toString();
    if (mSelectedKey.isEmpty())
        mSelectedKey = firstKeyOfAll;
    updateCurrentButton(selectedCode());
    mCurrentButtonValue = mSelectedKey;
    checkForSelectedFunctionKey();
    updatePopUpSelection();
}

void KeyboardKeysController::saveLastSelectedKey()
{
    // Before the first refresh no key is selected; the one saved last stays.
    if (mIsFirstLaunch)
        return;
    // The file is read again because it also holds the factory settings. A damaged one is not replaced.
    QVariantMap plist = readKestraPlist();
    if (plist.isEmpty())
        return;
    QVariantMap deviceInfo = plist.value(SettingsKeys::deviceInfo).toMap();
    deviceInfo.insert(SettingsKeys::lastSelectedKey, mSelectedKey);
    plist.insert(SettingsKeys::deviceInfo, deviceInfo);
    (void)PropertyList::writePropertyListFile(kestraPlistPath(), plist);
}

void KeyboardKeysController::removeDeletedMacroProfileMappingsForMapping(int deletedIndex, int mappingType)
{
    if (!mKeysDelegate)
        return;
    // The main controller calls this before it refreshes the macros and after it has refreshed the profiles.
    const std::optional<QVariantList> repaired = KeyMappings::removeDeletedMacroProfileMappings(
        mAllProfilesArray, mAllMacrosArray, mDefaultDict, deletedIndex, mappingType);
    if (repaired)
        mKeysDelegate->updateProfileKeyInDictionaryWithDictionary(*repaired);
}
