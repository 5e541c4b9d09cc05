// SPDX-License-Identifier: MIT
// Notifications of the daemon, errors shown to the user, help and links.
#include "app/keyboardmaincontroller.h"

#include "app/historycontroller.h"
#include "app/qlcerrorhandler.h"
#include "base/plistnumbers.h"
#include "base/resources.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "keys/keyboardkeyscontroller.h"
#include "lighting/keyboardlightingcontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "platform/addresses.h"
#include "platform/helpviewer.h"
#include "platform/messageport.h"
#include "platform/sheet.h"
#include "platform/spinner.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct ErrorTexts
{
    const char *title;
    const char *description;
    const char *button;
};

// Index is the error code: 0 for a daemon that does not answer, 1 for a keyboard that was not found.
constexpr std::array errorTexts{
    ErrorTexts{"lkeyCommErrorTitle", "lkeyCommErrorDesc", "lkeyOK"},
    ErrorTexts{"lkeyDeviceNotFoundTitle", "lkeyDeviceNotFoundDesc", "lkeyOK"},
};

QString errorDescription(int errorCode)
{
    // A daemon that is silent is ended and starts again. One that does not run must be started by the user.
    if (errorCode == 0 && messagePortOwner(DaemonProtocol::requestPortName).isEmpty())
        return localizedFormat("lkeyCommErrorNoServiceDesc",
                               {localizedText("lkeyNoticeStart"), localizedText("lkeyNoticeHelp")});
    return localizedText(errorTexts[size_t(errorCode)].description);
}

} // namespace

void KeyboardMainController::addObserver(const QString &name, NotificationHandler handler)
{
    mNotificationCenter->addObserver(
        this, name, [this, handler](const DistributedNotification &notification) { (this->*handler)(notification); });
}

void KeyboardMainController::observeCommandReplies(int product)
{
    // Deliberate: each attachment adds an observer, even when there is one already, and it is never removed.
    addObserver(DaemonProtocol::commandReplyNotification(product), &KeyboardMainController::commandReplyReceived);
}

void KeyboardMainController::registerNotifications()
{
    addObserverDeviceAttachment();
    addObserverDeviceRemoval();
    addObserverProfileUpdate();
    addObserver(DaemonProtocol::dpiUpdated, &KeyboardMainController::deamonDPIUpdateNotification);
    addObserver(DaemonProtocol::savedNewOtfm, &KeyboardMainController::savedNewOTFMNotification);
    addObserver(DaemonProtocol::illuminationUpdated, &KeyboardMainController::illuminationChangesNotification);
}

void KeyboardMainController::addObserverDeviceAttachment()
{
    addObserver(DaemonProtocol::deviceAttached, &KeyboardMainController::deviceConnectedNotification);
}

void KeyboardMainController::removeObserverDeviceAttachment()
{
    mNotificationCenter->removeObserver(this, DaemonProtocol::deviceAttached);
}

void KeyboardMainController::addObserverDeviceRemoval()
{
    addObserver(DaemonProtocol::deviceRemoved, &KeyboardMainController::deviceDisconnectedNotification);
}

void KeyboardMainController::removeObserverDeviceRemoval()
{
    mNotificationCenter->removeObserver(this, DaemonProtocol::deviceRemoved);
}

void KeyboardMainController::addObserverProfileUpdate()
{
    addObserver(DaemonProtocol::profileUpdated, &KeyboardMainController::deamonProfileUpdateNotification);
}

void KeyboardMainController::removeObserverProfileUpdate()
{
    mNotificationCenter->removeObserver(this, DaemonProtocol::profileUpdated);
}

void KeyboardMainController::deviceConnectedNotification(const DistributedNotification &notification)
{
    removeObserverDeviceAttachment();
    mIsDeviceRemoved = false;
    // An empty version makes the query thread ask for it again.
    setFirmwareVersionString({});
    bool isNumber = false;
    const int product = notification.name.section(u' ', 2, 2).toInt(&isNumber);
    hideErrorDialog();
    if (isNumber && (product == DaemonProtocol::productId || product == 0)) {
        mDevicePID = product;
        observeCommandReplies(product);
        mIsWiredDevice = product == DaemonProtocol::productId;
    }
    mBusyIndicator->stopAnimation(); // an unanswered deletion leaves it spinning
    loadLatestSettings();
    setProperties();
    setControlsState(true);
    updateUISettings();
    addObserverDeviceAttachment();
    // The daemon has ended everything that was in progress when the keyboard was removed.
    mKeysController->keyboardCameBack();
    mMacrosController->keyboardCameBack();
}

void KeyboardMainController::deviceDisconnectedNotification(const DistributedNotification &)
{
    removeObserverDeviceRemoval();
    mIsDeviceRemoved = true;
    showErrorDialog();
    mLightingController->showFirmwareVersion(u"-"_s);
    mLightingController->stopProgressIndicatorAnimation();
    mMacrosController->stopAllMacroRecording();
    setControlsState(false);
    addObserverDeviceRemoval();
}

void KeyboardMainController::deamonProfileUpdateNotification(const DistributedNotification &notification)
{
    removeObserverProfileUpdate();
    const bool isOwnChange =
        notification.userInfo.value(DaemonProtocol::sourceApp).toString() == DaemonProtocol::configuratorIdentifier;
    if (!isOwnChange) {
        loadLatestSettings();
        setProperties();
        updateUISettings();
        mHistory->documentFollowed();
    }
    addObserverProfileUpdate();
}

void KeyboardMainController::savedNewOTFMNotification(const DistributedNotification &notification)
{
    const QVariant macros = notification.userInfo.value(DaemonProtocol::allMacros);
    // In this notification the key holds the active profile itself, not its index.
    const QVariant profile = notification.userInfo.value(SettingsKeys::activeProfile);
    // A value of another type is ignored: it would empty the record on which the next change is based.
    if (macros.typeId() == QMetaType::QVariantList)
        mMacrosArray = macros.toList();
    if (profile.typeId() == QMetaType::QVariantMap)
        mCurrentProfileDict = profile.toMap();
    setProperties();
    mKeysController->updateUISettings();
    mMacrosController->updateTableWithNewMacro();
}

void KeyboardMainController::illuminationChangesNotification(const DistributedNotification &notification)
{
    mLightingController->updateBrightnessValue(
        PlistNumbers::integerValue(notification.userInfo.value(SettingsKeys::brightnessKbNormal)));
}

void KeyboardMainController::commandReplyReceived(const DistributedNotification &notification)
{
    const int command = PlistNumbers::integerValue(notification.userInfo.value(DaemonProtocol::messageId));
    if (command != int(DaemonProtocol::Command::queryFirmwareVersion))
        return;
    mLightingController->stopProgressIndicatorAnimation();
    updateDriverVersions(notification.userInfo);
}

void KeyboardMainController::busHasEnded()
{
    setControlsState(false);
    mBusyIndicator->stopAnimation();
    mLightingController->stopProgressIndicatorAnimation();
    mIsDaemonSilent = true;
    showStatus();
    QLCErrorHandler::showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
        localizedText("lkeySessionEndedTitle"), localizedText("lkeySessionEndedDesc"), localizedText("lkeyOK"), {},
        mMainWindow);
}

// Errors and recovery -------------------------------------------------------------------------------------------------

void KeyboardMainController::showErrorForErrorCode(int errorCode)
{
    if (errorCode < 0 || errorCode >= int(errorTexts.size()))
        return;
    const ErrorTexts &texts = errorTexts[size_t(errorCode)];
    QLCErrorHandler::showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
        localizedText(texts.title), errorDescription(errorCode), localizedText(texts.button), {}, mMainWindow);
}

void KeyboardMainController::showErrorDialog()
{
    mCommunicationAlertWindow->beginSheet(mMainWindow);
}

void KeyboardMainController::hideErrorDialog()
{
    mCommunicationAlertWindow->orderOut();
    mCommunicationAlertWindow->endSheet();
}

void KeyboardMainController::clickCommAlertOKButton(QObject *)
{
    hideErrorDialog();
}

void KeyboardMainController::showRestoringStateWindow()
{
    mRestoringStateProgress->setRange(0, 0); // the end is unknown: the bar runs
    mRestoringStateWindow->beginSheet(mMainWindow);
}

void KeyboardMainController::closeRestoringStateWindow()
{
    mRestoringStateProgress->setRange(0, 1);
    mRestoringStateWindow->orderOut();
    mRestoringStateWindow->endSheet();
}

void KeyboardMainController::relaunchDaemon()
{
    // This only ends the daemon; its supervisor starts it again.
    mServices.endProcesses(DaemonProtocol::daemonProcessName);
}

// Help and links ------------------------------------------------------------------------------------------------------

void KeyboardMainController::registerHelpBook()
{
    // The string table names the help book: help and window are in one language.
    HelpViewer::registerBook(localizedText("lkeyHelpBookTitle"), resourcePath(localizedText("lkeyHelpBookFolder")));
}

void KeyboardMainController::openRegisteredHelpBook()
{
    HelpViewer::gotoPage(u"index.html"_s);
}

void KeyboardMainController::clickHelpButton(QObject *)
{
    openRegisteredHelpBook();
}

void KeyboardMainController::clickFBButton(QObject *)
{
    openPage(QUrl(Addresses::firstSocialNetwork));
}

void KeyboardMainController::clickTwitterButton(QObject *)
{
    openPage(QUrl(Addresses::secondSocialNetwork));
}

void KeyboardMainController::clickQuillClubButton(QObject *)
{
    openPage(QUrl(Addresses::community));
}

void KeyboardMainController::openPage(const QUrl &address)
{
    const WebPages::Outcome outcome = mServices.openPage(address);
    if (outcome == WebPages::Outcome::opened)
        return;
    const char *reasonKey =
        outcome == WebPages::Outcome::placeholder ? "lkeyPageIsPlaceholderDesc" : "lkeyPageWithoutBrowserDesc";
    QLCErrorHandler::showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
        localizedText("lkeyPageNotOpenedTitle"), localizedFormat(reasonKey, {address.toDisplayString()}),
        localizedText("lkeyOK"), {}, mMainWindow);
}
