// SPDX-License-Identifier: MIT
// The part of KeyboardKeysController that follows the daemon's notifications of captured keys and of the game mode. It
// also shows the notice for function keys.
#include "keys/keyboardkeyscontroller.h"

#include "base/daemonprotocol.h"
#include "base/plistnumbers.h"
#include "base/text.h"
#include "keys/keylayout.h"
#include "keys/newmacro.h"
#include "macros/eventparser.h"
#include "platform/distributednotificationcenter.h"
#include "platform/sheet.h"

#include <QAction>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

using KeyMappings::Assignment;

void KeyboardKeysController::registerNotification()
{
    mKeysNotificationCenter->addObserver(this, DaemonProtocol::singleKeyEvent,
                                         [this](const DistributedNotification &posted) { singleKeyEvents(posted); });
    mNewMacro->observe(*mKeysNotificationCenter);
    mKeysNotificationCenter->addObserver(this, DaemonProtocol::gameModePressed,
                                         [this](const DistributedNotification &posted) { gameModeSwitch(posted); });
}

void KeyboardKeysController::openSingleKeySheet()
{
    mSingleKeyInput->clear();
    mSingleKeyInput->setFocus();
    mSingleKeyOK->setDefault(false);
    mSingleKeyOK->setEnabled(false); // until a key is captured: otherwise OK would make the assigned key do nothing
    mSingleKeyWindow->beginSheet(mKeysWindow, [this](int returnCode) {
        sheetDidEndReturnCodeContextInfo(mSingleKeyWindow, returnCode, nullptr);
    });
    mSheetSubject.note(mSingleKeyWindow, profile());
    captureSingleKey();
}

void KeyboardKeysController::captureSingleKey()
{
    if (mKeysDelegate)
        mKeysDelegate->startSingleKeyRecording();
    Q_EMIT captureAreaChanged();
}

void KeyboardKeysController::keyboardCameBack()
{
    if (mSingleKeyWindow->isUp())
        captureSingleKey();
    mNewMacro->keyboardCameBack();
}

// A new macro for the selected keys

void KeyboardKeysController::setMKeysDelegate(KeysDelegate *delegate)
{
    mKeysDelegate = delegate;
    mNewMacro->setDelegate(delegate);
}

void KeyboardKeysController::connectNewMacro()
{
    mNewMacro = new NewMacro(this);
    connect(mNewMacro, &NewMacro::captureAreaChanged, this, &KeyboardKeysController::captureAreaChanged);
    connect(mNewMacro, &NewMacro::assigned, this,
            [this](int macroRow) { writeEntry(Assignment::playMacro, macroRow, KeyMappings::playOnceValue); });
    mMakeMacro = new QAction(localizedText("lkeyKeysNewMacro"), this);
    mMakeMacro->setObjectName(QStringLiteral("mMakeMacro"));
    connect(mMakeMacro, &QAction::triggered, this, &KeyboardKeysController::makeNewMacro);
}

void KeyboardKeysController::makeNewMacro()
{
    if (!mHasDeviceConnected || mIsFirstLaunch)
        return;
    QString keys = shownKeyName(selectedCode());
    if (!mOtherSelectedKeys.isEmpty())
        keys = localizedFormat("lkeyKeysSeveralSelected", {keys, QString::number(mOtherSelectedKeys.size())});
    mNewMacro->begin(mView, mKeysWindow, keys, profile());
}

void KeyboardKeysController::stopNewMacroRecording()
{
    mNewMacro->stopRunningRecording();
}

void KeyboardKeysController::keepNewMacro()
{
    mNewMacro->keep();
}

QWidget *KeyboardKeysController::captureArea() const
{
    return mSingleKeyWindow->isUp() ? mSingleKeyWindow : mNewMacro->captureArea();
}

void KeyboardKeysController::showCaptureSource(const CaptureSource &source)
{
    const QString prompt = captureText(
        source,
        {.unknown = "lkeySingleKeyInput", .window = "lkeyTypeKeyHere", .realKeyboards = "lkeySingleKeyInputOn"});
    const QString hint = captureHint(source);
    mSingleKeyInputLabel->setText(prompt);
    mSingleKeyInput->setAccessibleName(prompt);
    mSingleKeyInput->setAccessibleDescription(hint);
    mSingleKeyHint->setText(hint);
    mSingleKeyHint->setVisible(!hint.isEmpty());
    mNewMacro->showCaptureSource(source);
}

void KeyboardKeysController::singleKeyEvents(const DistributedNotification &notification)
{
    mSingleKeyHIDCode = PlistNumbers::integerValue(notification.userInfo.value(DaemonProtocol::singleKey));
    mSingleKeyModifierCode = PlistNumbers::integerValue(notification.userInfo.value(DaemonProtocol::singleKeyModifier));
    mSingleKeyInput->clear();
    mSingleKeyInput->setText(eventParser::getStringWithHIDWithModifier(mSingleKeyHIDCode, mSingleKeyModifierCode));
    mSingleKeyOK->setEnabled(true);
    mSingleKeyOK->setDefault(true);
}

void KeyboardKeysController::clickSingleKeyOK(QObject *)
{
    mIsCancelSingleKey = false;
    mSingleKeyWindow->orderOut();
    mSingleKeyWindow->endSheet();
    if (mKeysDelegate)
        mKeysDelegate->stopSingleKeyRecording();
}

void KeyboardKeysController::clickSingleKeyCancel(QObject *)
{
    mIsCancelSingleKey = true;
    mSingleKeyWindow->orderOut();
    mSingleKeyWindow->endSheet();
    // The removal of the keyboard has already ended the capture.
    if (mKeysDelegate && mHasDeviceConnected)
        mKeysDelegate->stopSingleKeyRecording();
    updatePopUpSelection();
}

void KeyboardKeysController::sheetDidEndReturnCodeContextInfo(Sheet *, int, void *)
{
    Q_EMIT captureAreaChanged();
    // Deliberate: the code does not check that a key was captured, since the button is disabled until then. Otherwise
    // the last captured key, at first 0, would be written.
    if (!mIsCancelSingleKey)
        updateSelectedKeyCommandValueParamOneAndParamTwo(static_cast<int>(Assignment::singleKey), mSingleKeyHIDCode,
                                                         mSingleKeyModifierCode);
}

void KeyboardKeysController::gameModeSwitch(const DistributedNotification &)
{
    mGameMode = !mGameMode;
    functionKeysInfoDisplay(checkPopUpAssignmentIndexForValue(entryForKey(selectedCode()).command));
}

void KeyboardKeysController::checkForSelectedFunctionKey()
{
    const KeyRow *row = KeyLayout::rowForCode(selectedCode());
    if (!row || !row->isFunctionKey())
        return;
    mIsFunctionKeySelected = true;
    mKeyName = row->functionKeyName;
}

void KeyboardKeysController::functionKeysInfoDisplay(int position)
{
    const char *textKey = mGameMode ? "lkeyFunctionKeysInfoGameModeOn" : "lkeyFunctionKeysInfoGameModeOff";
    mFunctionKeysInfoLabel->setText(localizedFormat(textKey, {mKeyName}));
    const bool isShown = mIsFunctionKeySelected && position != KeyMappings::defaultKeyPosition;
    if (isShown && mFunctionKeysInfoImage->pixmap(Qt::ReturnByValue).isNull()) {
        const QIcon icon = mFunctionKeysInfoImage->style()->standardIcon(QStyle::SP_MessageBoxInformation);
        mFunctionKeysInfoImage->setPixmap(
            icon.pixmap(mFunctionKeysInfoImage->size(), mFunctionKeysInfoImage->devicePixelRatio()));
    }
    mFunctionKeysInfoLabel->setVisible(isShown);
    mFunctionKeysInfoImage->setVisible(isShown);
}
