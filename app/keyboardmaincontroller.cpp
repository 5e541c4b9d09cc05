// SPDX-License-Identifier: MIT
// Life cycle of the hub: opening the device, holding the document, driving the tabs, the versions.
#include "app/keyboardmaincontroller.h"

#include "app/historycontroller.h"
#include "app/keyboardmaintenancecontroller.h"
#include "app/typedkeys.h"
#include "base/devicesettings.h"
#include "base/document.h"
#include "base/plistnumbers.h"
#include "base/resources.h"
#include "daemonlink/daemoncommands.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "daemonlink/replyport.h"
#include "keys/keyboardkeyscontroller.h"
#include "lighting/backlight.h"
#include "lighting/keyboardlightingcontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "platform/flushdisplay.h"
#include "platform/sessionbus.h"
#include "platform/spinner.h"
#include "profiles/applicationbinding.h"
#include "profiles/keyboardprofilescontroller.h"

#include <QApplication>
#include <QLabel>
#include <QTabWidget>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

const QString replyPortName = DaemonProtocol::configuratorReplyPortName;

// The reply port must be there before the first request names it; registering a bus name takes about a millisecond.
constexpr int replyPortStartLimitMs = 2000;

/// An open menu may list records that are gone, and its actions may change the wrong record.
void closeOpenMenus()
{
    while (QWidget *menu = QApplication::activePopupWidget())
        menu->hide();
}

} // namespace

KeyboardMainController::KeyboardMainController(MainControllerServices services, QObject *parent)
    : QObject(parent), mServices(std::move(services)), mStatus(mServices.statusTimes),
      mKeysController(new KeyboardKeysController(this)), mProfilesController(new KeyboardProfilesController(this)),
      mMacrosController(new KeyboardMacrosController(this)), mLightingController(new KeyboardLightingController(this)),
      mMaintenenaceController(new KeyboardMaintenanceController(this))
{
    mLightingController->setUrlOpener([this](const QUrl &address) { openPage(address); });
    mHistory = std::make_unique<HistoryController>(*this, mServiceStatus);
    connectStatus();
}

KeyboardMainController::~KeyboardMainController()
{
    // The thread must end before the members that it uses.
    mFirmwareQueryThread = {};
}

QString KeyboardMainController::firmwareVersionString() const
{
    const std::scoped_lock lock(mFirmwareMutex);
    return mFirmwareVersionString;
}

void KeyboardMainController::setFirmwareVersionString(const QString &version)
{
    const std::scoped_lock lock(mFirmwareMutex);
    mFirmwareVersionString = version;
}

void KeyboardMainController::setOutlets(const MainWindowOutlets &outlets)
{
    static_cast<MainWindowOutlets &>(*this) = outlets;
    mStatus.setLine(mStatusLine);
    mStatus.setNotice(outlets.mConnectionNotice);
    mHistory->setOutlets(mMainWindow, mUndoButton, mHistoryButton);
}

void KeyboardMainController::awakeFromNib()
{
    mNotificationCenter = &DistributedNotificationCenter::defaultCenter();
    mCurrentProfileDict = {};
    mDeviceSettingsDict = {};
    mProfilesArray = {};
    mMacrosArray = {};
    setControlsState(false);
    mBusyIndicator->stopAnimation();
    createLocalPort();
    mBusEnd = std::make_unique<BusEnd>(sharedSessionBus());
    connect(mBusEnd.get(), &BusEnd::reached, this, &KeyboardMainController::busHasEnded);
    mTypedKeys = std::make_unique<TypedKeys>(mDevicesStatus, mServiceStatus);
    connectTypedKeys();
    connect(&mMacroTry, &MacroTryLink::played, mMacrosController, &KeyboardMacrosController::showTriedKeys);
    connect(&mMacroTry, &MacroTryLink::ended, mMacrosController, &KeyboardMacrosController::endTry);
    mDeletedProfileID = 0;
    mIsDeleteProfile = false;
    setFirmwareVersionString({});
}

void KeyboardMainController::connectTypedKeys()
{
    const auto listen = [this] {
        QWidget *area = mKeysController->captureArea();
        mTypedKeys->listen(area ? area : mMacrosController->captureArea());
        mHistory->captureChanged();
    };
    connect(mKeysController, &KeyboardKeysController::captureAreaChanged, mTypedKeys.get(), listen);
    connect(mMacrosController, &KeyboardMacrosController::captureAreaChanged, mTypedKeys.get(), listen);
    connect(mTypedKeys.get(), &TypedKeys::sourceChanged, this, [this] {
        const CaptureSource source = mTypedKeys->source();
        mKeysController->showCaptureSource(source);
        mMacrosController->showCaptureSource(source);
    });
}

void KeyboardMainController::createLocalPort()
{
    mLocalMessagePort = std::make_unique<ReplyPort>(replyPortName);
    mLocalMessagePort->start();
}

void KeyboardMainController::initializeDevice()
{
    // This function processes no event: a click or a notification must not meet a half-opened keyboard.
    const bool wasSheetShown = mRestoringStateWindow->isVisible();
    closeRestoringStateWindow();
    const auto paintPlaceOfSheet = [this, wasSheetShown] {
        if (!wasSheetShown)
            return;
        mMainWindow->repaint(mRestoringStateWindow->geometry());
        flushDisplay();
    };
    mLocalMessagePort->waitUntilServing(replyPortStartLimitMs);
    // Without a daemon this thread waits for seconds. The window must not show the sheet meanwhile.
    sendAndWait(Command::openDevice, DaemonCommands::openDevice(replyPortName, kestraPlistPath()), paintPlaceOfSheet);
    loadDefaultDict();
    closeRestoringStateWindow();

    const std::optional<QVariantMap> reply = LatestReplySlot::shared().take();
    // Deliberate asymmetry: the status of this command is a found flag, the status of every other an error code.
    const bool isFound = reply && reply->value(DaemonProtocol::returnStatus).toBool();
    if (reply && !isFound)
        setFirmwareVersionString(u"-"_s);
    mDevicePID = DaemonProtocol::productId;
    observeCommandReplies(mDevicePID);
    mIsWiredDevice = true;
    if (isFound)
        loadLatestSettings();
    else
        loadDictionariesWithDefaultDict();
    setProperties();
    populateUISettings();
    updateUISettings();
    setControlsState(isFound);
    if (!reply) {
        showErrorForErrorCode(0);
        relaunchDaemon();
    } else if (!isFound) {
        showErrorDialog();
    }

    registerNotifications();
    mDevicesStatus.start();
    mServiceStatus.start();
    mHistory->start();
    registerHelpBook();
    mFirmwareQueryThread = std::jthread([this](const std::stop_token &stop) { FWQueryThreadAboutToRun(stop); });
    Q_EMIT deviceInitialized();
}

void KeyboardMainController::loadDefaultDict()
{
    const std::optional<QVariantMap> factory = readDefaultSettings(kestraPlistPath());
    mDefaultSettingsDict = factory.value_or(QVariantMap());
}

void KeyboardMainController::loadDictionariesWithDefaultDict()
{
    const Document factory(mDefaultSettingsDict);
    mProfilesArray = factory.profiles();
    mCurrentProfileDict = factory.profile(0);
    mMacrosArray = factory.macros();
}

void KeyboardMainController::loadLatestSettings()
{
    (void)readLatestSettings();
}

bool KeyboardMainController::readLatestSettings()
{
    sendAndWait(Command::readSettings, DaemonCommands::readSettings(mDevicePID, replyPortName));
    const std::optional<QVariantMap> reply = LatestReplySlot::shared().take();
    reportOutcome(Command::readSettings, reply);
    const QVariant allDevSettings = reply ? reply->value(DaemonProtocol::allDevSettings) : QVariant();
    if (allDevSettings.typeId() != QMetaType::QVariantMap) {
        mMayRowsHaveMoved = true;
        return false;
    }
    updateToLatestSettings(allDevSettings.toMap());
    forgetDeletionThatFailed();
    return true;
}

void KeyboardMainController::forgetDeletionThatFailed()
{
    if (!mIsDeleteProfile || mHasDeletionReply)
        return;
    // The keyboard's own keys may have changed the light meanwhile.
    const QVariantMap there = mProfilesArray.value(mDeletedProfileID).toMap();
    if (Backlight::withoutLight(there) == Backlight::withoutLight(mDeletedProfile))
        mIsDeleteProfile = false;
}

void KeyboardMainController::updateToLatestSettings(const QVariantMap &allDevSettings)
{
    const Document document(allDevSettings);
    mCurrentProfileDict = document.activeProfile(); // empty if the daemon sends an index outside the list by mistake
    mProfilesArray = document.profiles();
    mMacrosArray = document.macros();
    mDeviceSettingsDict = document.deviceSettings().dictionary();
    mMayRowsHaveMoved = false;
    mAreMacroEventsOld = false;
}

void KeyboardMainController::setProperties()
{
    closeOpenMenus();
    const QVariantMap defaultProfile = Document(mDefaultSettingsDict).profile(0);

    mProfilesController->setMDefaultProfileDict(defaultProfile);
    mProfilesController->setMCurrentProfileDict(mCurrentProfileDict);
    mProfilesController->setMDeviceSettingsDict(mDeviceSettingsDict);
    mProfilesController->setMAllProfilesArray(mProfilesArray);

    mMacrosController->setMMacrosSettingsArray(mMacrosArray);
    mMacrosController->setProfiles(mProfilesArray, DeviceSettings(mDeviceSettingsDict).activeProfileIndex());

    mKeysController->setMKeysCurrentProfileDict(mCurrentProfileDict);
    mKeysController->setMAllProfilesArray(mProfilesArray);
    mKeysController->setMAllMacrosArray(mMacrosArray);
    mKeysController->setMDeviceSettingsDict(mDeviceSettingsDict);
    mKeysController->setMDefaultDict(defaultProfile);

    mLightingController->setMDefaultDict(defaultProfile);
    mLightingController->setMLightingSettingsDict(mCurrentProfileDict);
    mLightingController->setMDeviceSettingsDict(mDeviceSettingsDict);
    mLightingController->setMAllProfilesArray(mProfilesArray);

    mProfilesController->setMProfileDelegate(this);
    mMacrosController->setMMacroDelegate(this);
    mLightingController->setMLightingDelegate(this);
    mKeysController->setMKeysDelegate(this);

    mProfilesController->setMProfilesWindow(mMainWindow);
    mMacrosController->setMMacrosWindow(mMainWindow);
    mKeysController->setMKeysWindow(mMainWindow);
    mLightingController->setMLightingWindow(mMainWindow);
    showStatus();
}

void KeyboardMainController::populateUISettings()
{
    mKeysController->populateUIControls();
}

void KeyboardMainController::updateUISettings()
{
    // The macros tab is left out deliberately: it is refreshed only through its table.
    mProfilesController->updateUISettings();
    mKeysController->updateUISettings();
    mLightingController->updateUISettings();
    refreshControllersTableDisplay();
}

void KeyboardMainController::refreshControllersTableDisplay()
{
    mProfilesController->refreshTableDisplay();
    mMacrosController->refreshTableDisplay();
}

void KeyboardMainController::setControlsState(bool enabled)
{
    mAreControlsOn = enabled;
    mFocusMemory.change(mMainWindow, [this, enabled] {
        mKeysController->setControlsState(enabled);
        mProfilesController->setControlsState(enabled);
        mMacrosController->setControlsState(enabled);
        mLightingController->setControlsState(enabled);
        mMaintenenaceController->setControlsState(enabled);
        mHistory->setControlsState(enabled);
    });
    showStatus();
    Q_EMIT controlsStateChanged();
}

void KeyboardMainController::updateProfilesControlState(bool enabled)
{
    if (enabled) {
        mBusyIndicator->stopAnimation();
    } else {
        mBusyIndicator->startAnimation();
        mBusyIndicator->repaint(); // the request may block this thread for seconds
    }
    // The keyboard may have been removed meanwhile.
    mFocusMemory.change(mMainWindow,
                        [this, enabled] { mProfilesController->setControlsState(enabled && mAreControlsOn); });
}

void KeyboardMainController::selectTabAtIndex(int index)
{
    mKeyboardTabView->setCurrentIndex(index);
}

void KeyboardMainController::tabViewDidSelectTabViewItem(QTabWidget *, const QWidget *page)
{
    const QString label = page->property(tabLabelProperty).toString();
    mMacrosController->checkMacroRecordingStatus(label);
    // The card of the selected key shows the events of its macro.
    if (label == "Keys"_L1 && mAreMacroEventsOld && !mIsDeviceRemoved)
        refresh();
}

void KeyboardMainController::saveLastSelectedKey()
{
    mKeysController->saveLastSelectedKey();
}

void KeyboardMainController::checkMacroRecording()
{
    mKeysController->stopNewMacroRecording();
    mMacrosController->stopAllMacroRecording();
}

void KeyboardMainController::keepNewMacro()
{
    mKeysController->keepNewMacro();
}

void KeyboardMainController::FWQueryThreadAboutToRun(const std::stop_token &stop)
{
    std::mutex mutex;
    std::condition_variable_any stopped;
    std::unique_lock lock(mutex);
    while (!stopped.wait_for(lock, stop, mServices.firmwareQueryInterval, [&stop] { return stop.stop_requested(); }))
        setDriverVersions();
}

void KeyboardMainController::setDriverVersions()
{
    if (!firmwareVersionString().isEmpty())
        return;
    // The start of the indicator is queued before the request, because the reply stops it. Before it starts, the
    // previous request may have been answered or the keyboard removed.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!mIsDeviceRemoved && firmwareVersionString().isEmpty())
                mLightingController->startProgresIndicatorAnimation();
        },
        Qt::QueuedConnection);
    sendDaemonRequest(DaemonCommands::queryFirmwareVersion(mDevicePID, replyPortName),
                      int(Command::queryFirmwareVersion));
}

void KeyboardMainController::updateDriverVersions(const std::optional<QVariantMap> &reply)
{
    if (!reply)
        return;
    const QString version = reply->value(DaemonProtocol::firmwareVersion).toString();
    setFirmwareVersionString(version);
    if (PlistNumbers::integerValue(reply->value(DaemonProtocol::returnStatus)) != 0)
        return;
    mLightingController->showDriverVersion(QStringLiteral(KESTRA_VERSION));
    mLightingController->showFirmwareVersion(version);
}
