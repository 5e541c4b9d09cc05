// SPDX-License-Identifier: MIT
// The hub. Owns the copy of the settings document, the link to the daemon and the observers of its notifications.
// Drives the five tabs and turns each of their requests into one numbered command. Main thread, except for
// FWQueryThreadAboutToRun and setDriverVersions, which run on the firmware-query thread.
#pragma once

#include "app/devicesstatus.h"
#include "app/macrotrylink.h"
#include "app/mainwindowoutlets.h"
#include "app/servicestatus.h"
#include "app/statusreporter.h"
#include "base/daemonprotocol.h"
#include "keys/keysdelegate.h"
#include "lighting/lightingdelegate.h"
#include "macros/macrodelegate.h"
#include "platform/busend.h"
#include "platform/distributednotificationcenter.h"
#include "platform/focusmemory.h"
#include "platform/processes.h"
#include "platform/webpages.h"
#include "profiles/profiledelegate.h"

#include <QDBusMessage>
#include <QObject>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class HistoryController;
class KeyboardKeysController;
class KeyboardLightingController;
class KeyboardMacrosController;
class KeyboardMaintenanceController;
class KeyboardProfilesController;
class ReplyPort;
class TypedKeys;

/// Property of a tab's page: the tab's label (QString), which is never translated.
inline constexpr char tabLabelProperty[] = "tabLabel";

/// The functions outside the hub that it calls, and its times. Tests substitute their own.
struct MainControllerServices
{
    Processes::Ender endProcesses = Processes::endAllNamed;
    std::function<WebPages::Outcome(const QUrl &)> openPage = WebPages::open;
    std::chrono::milliseconds firmwareQueryInterval{3000};
    StatusTimes statusTimes = {};
};

class KeyboardMainController : public QObject,
                               public KeysDelegate,
                               public MacroDelegate,
                               public ProfileDelegate,
                               public LightingDelegate,
                               private MainWindowOutlets
{
    Q_OBJECT

public:
    explicit KeyboardMainController(MainControllerServices services = {}, QObject *parent = nullptr);
    ~KeyboardMainController() override;

    KeyboardKeysController *keysController() const { return mKeysController; }
    KeyboardProfilesController *profilesController() const { return mProfilesController; }
    KeyboardMacrosController *macrosController() const { return mMacrosController; }
    /// Follows the daemon; for other parts of the window that follow it.
    [[nodiscard]] const ServiceStatus &serviceStatus() const { return mServiceStatus; }
    KeyboardLightingController *lightingController() const { return mLightingController; }
    KeyboardMaintenanceController *maintenanceController() const { return mMaintenenaceController; }

    // The document held
    const QVariantMap &defaultSettingsDict() const { return mDefaultSettingsDict; }
    const QVariantMap &currentProfileDict() const { return mCurrentProfileDict; }
    const QVariantMap &deviceSettingsDict() const { return mDeviceSettingsDict; }
    const QVariantList &profilesArray() const { return mProfilesArray; }
    const QVariantList &macrosArray() const { return mMacrosArray; }
    int devicePID() const { return mDevicePID; }
    bool isWiredDevice() const { return mIsWiredDevice; }
    QString firmwareVersionString() const;
    /// Whether initializeDevice() has had its reply, or none.
    [[nodiscard]] bool isOpened() const { return mIsOpened; }
    /// The latest argument of setControlsState(): whether there is a keyboard to change.
    [[nodiscard]] bool areControlsOn() const { return mAreControlsOn; }

    // Life cycle
    void setOutlets(const MainWindowOutlets &outlets);
    void setMMainWindow(QWidget *window) { mMainWindow = window; }
    QWidget *mainWindow() const { return mMainWindow; }
    void awakeFromNib();
    void createLocalPort();
    void initializeDevice();
    void loadDefaultDict();
    void loadDictionariesWithDefaultDict();
    void loadLatestSettings();
    /// `allDevSettings` is a whole settings document. It replaces the copy held; the two are never merged.
    void updateToLatestSettings(const QVariantMap &allDevSettings);
    void setProperties();
    void populateUISettings();
    void updateUISettings();
    void refreshControllersTableDisplay();
    void setControlsState(bool enabled);
    /// False starts the busy indicator and disables the profiles tab; true does the opposite.
    void updateProfilesControlState(bool enabled);
    /// `page` is now in front; its property tabLabelProperty holds the tab's untranslated label.
    void tabViewDidSelectTabViewItem(QTabWidget *tabView, const QWidget *page);
    void saveLastSelectedKey();
    /// Ends a recording into a macro, on the macros tab or into a new one, and stores it.
    void checkMacroRecording();
    /// Ends the sheet that records a new macro and keeps what was recorded.
    void keepNewMacro();
    void checkMacroRecordingStatus() {}

    // Versions
    /// Asks for the firmware version every 3 seconds until `stop` is requested.
    void FWQueryThreadAboutToRun(const std::stop_token &stop);
    void setDriverVersions();
    void updateDriverVersions(const std::optional<QVariantMap> &reply);

    // Notifications of the daemon
    void registerNotifications();
    void addObserverDeviceAttachment();
    void removeObserverDeviceAttachment();
    void addObserverDeviceRemoval();
    void removeObserverDeviceRemoval();
    void addObserverProfileUpdate();
    void removeObserverProfileUpdate();
    void removeSelfAsNotificationObserver() {}
    void deviceConnectedNotification(const DistributedNotification &notification);
    void deviceDisconnectedNotification(const DistributedNotification &notification);
    void deamonProfileUpdateNotification(const DistributedNotification &notification);
    void savedNewOTFMNotification(const DistributedNotification &notification);
    /// Does nothing: the keyboard has no DPI.
    void deamonDPIUpdateNotification(const DistributedNotification &) {}
    void illuminationChangesNotification(const DistributedNotification &notification);
    void commandReplyReceived(const DistributedNotification &notification);
    /// The session bus has gone, and with it the daemon: switches the controls off and says so.
    void busHasEnded();

    // Errors, recovery, help
    void showErrorForErrorCode(int errorCode);
    void showErrorDialog();
    void hideErrorDialog();
    void clickCommAlertOKButton(QObject *sender);
    void showRestoringStateWindow();
    void relaunchDaemon();
    void registerHelpBook();
    void openRegisteredHelpBook();
    void clickHelpButton(QObject *sender);
    void clickFBButton(QObject *sender);
    void clickTwitterButton(QObject *sender);
    void clickQuillClubButton(QObject *sender);

    /// Sends command 38, at termination.
    void releaseQuillDeviceInstance();

    // KeysDelegate
    void updateKeySettings(const QVariantMap &settings) override;
    void startSingleKeyRecording() override;
    void stopSingleKeyRecording() override;
    void selectTabAtIndex(int index) override;
    void updateProfileKeyInDictionaryWithDictionary(const QVariantList &profiles) override;
    void beginAction() override;
    void endAction() override;

    // MacroDelegate
    void addMacroWithSettings(const QVariantMap &macro) override;
    void startMacroRecordingMacroIndex(int appendFlag, int macroIndex) override;
    void stopMacroRecording() override;
    void saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording) override;
    void getMacroDetailsForMacroAtIndex(int macroIndex) override;
    void deleteMacroAtIndex(int macroIndex) override;
    void renameMacroAtIndexWithNewName(int macroIndex, const QString &newName) override;
    void removeEventAtIndexForMacroAtIndex(int eventIndex, int macroIndex) override;
    void removeAllEventsForMacroAtIndex(int macroIndex) override;
    void setAllEventsDelayForMacroAtIndexHasNoDelay(int delay, int macroIndex, bool hasNoDelay) override;
    void setNewDelayAtMacroEventIndexForMacroAtIndex(int delay, int eventIndex, int macroIndex) override;
    void updateSequenceInfoEventIndexNewDict(int macroIndex, int eventIndex, const QVariantMap &event) override;
    QVariantMap getSequenceDetailsEventIndex(int macroIndex, int eventIndex) override;
    bool replaceEventsOfMacroAtIndex(int macroIndex, const QVariantList &readEvents,
                                     const QVariantList &events) override;
    bool reloadMacros() override;
    void recordButton(int button, bool isDown) override;
    void startTryMacroIndex(int repeat, int macroIndex) override;
    void stopTry() override { mMacroTry.stop(); }
    void startEditHID() override;
    void showKeyOfProfile(int keyCode, int profileIndex) override;

    // ProfileDelegate
    void switchProfileWithID(int profileID) override;
    void addNewProfileWithSettings(const QVariantMap &profile) override;
    void deleteProfileWithProfileID(int profileID) override;
    void renameProfileWithProfileIDAndSettings(int profileID, const QVariantMap &profile) override;
    void updateProfileWithSettings(const QVariantMap &settings) override;

    // LightingDelegate
    void updateValueForSetting(const QVariantMap &settings) override;

    /// KeysDelegate, MacroDelegate and ProfileDelegate: shows the event in the status line.
    void report(const StatusReport &event) override { mStatus.report(event); }

    /// Sends command 5 so that the active profile stays active.
    void addInactiveProfile(const QVariantMap &profile);
    /// Sends command 6 with the given keys of the profile at `profileID`; a negative index is sent as 0.
    void updateProfileWithIDAndSettings(int profileID, const QVariantMap &settings);

Q_SIGNALS:
    /// initializeDevice() has finished, with or without a keyboard.
    void deviceInitialized();
    /// areControlsOn() may have changed.
    void controlsStateChanged();

private:
    using NotificationHandler = void (KeyboardMainController::*)(const DistributedNotification &);

    void addObserver(const QString &name, NotificationHandler handler);
    void observeCommandReplies(int product);
    /// Lets the user type the keys that a sheet or a recording waits for, while no real keyboard is in use.
    void connectTypedKeys();
    void closeRestoringStateWindow();
    void setFirmwareVersionString(const QString &version);
    /// Calls loadLatestSettings(); false when no document came.
    bool readLatestSettings();
    /// Hands the pieces of the document held to the tabs, and redraws.
    void redraw();
    /// Redraws without a request, after a command that was refused or not answered.
    void redrawUnchanged();
    /// Asks for the whole document and redraws.
    void refresh();
    /// Replaces the document held with the one in `reply`, if any, and redraws.
    void applyReturnedDocument(const std::optional<QVariantMap> &reply);
    /// For commands whose reply has only a status: asks for the whole document after a success, only redraws otherwise.
    void refreshIf(bool hasSucceeded);
    void connectStatus();
    /// Sends a request and waits for the reply, which stays in the latest-reply slot. The status line shows a long
    /// wait.
    void sendAndWait(DaemonProtocol::Command command, const QVariantMap &request,
                     const std::function<void()> &meanwhile = {});
    /// Calls a method of an object of the daemon and waits as long as for the reply to a request. Absent without an
    /// answer in time. `whenLate`, which may be empty, then runs with the answer, from the event loop.
    std::optional<QDBusMessage> callAndWait(const QDBusMessage &call,
                                            const std::function<void(const QDBusMessage &reply)> &whenLate);
    /// The id of the entry of the history that Undo takes next; 0 if there is none, or without an answer.
    uint newestChange();
    /// Reports why the daemon has not replaced the events of a macro; `error` is the name of its error.
    void reportRefusedReplacement(const QString &error);
    /// Notes and shows that a wait for the daemon has ended.
    void waitHasEnded(StatusReporter::Wait &wait, bool hasAnswer);
    /// Reports a refusal or a missing reply in the status line. Command 0 must not be passed.
    void reportOutcome(DaemonProtocol::Command command, const std::optional<QVariantMap> &reply);
    /// Shows the state of keyboard, service and profile in the status line.
    void showStatus();
    /// Sends a request and waits. Takes the reply out of the latest-reply slot and returns it.
    std::optional<QVariantMap> replyTo(DaemonProtocol::Command command, const QVariantMap &request);
    /// Does the same for commands whose reply has only a status; false without a reply.
    bool succeeds(DaemonProtocol::Command command, const QVariantMap &request);
    /// Returns what identifies the record with the index in the request: a macro's identifier, or the record without
    /// its lighting. An empty dictionary if there is no such index.
    [[nodiscard]] QVariant recordNamedBy(DaemonProtocol::Command command, const QVariantMap &request) const;
    /// Checks that the index in the request is still that of the record that is shown there. Asks for the document when
    /// rows may have moved unseen. False when another record has the index, or when no document came.
    bool isMeantRecord(DaemonProtocol::Command command, const QVariantMap &request);
    /// Must be called when the document was read again. A deletion that was not answered and has not taken place must
    /// not remove assignments at a later switch.
    void forgetDeletionThatFailed();
    /// Reports a page that does not open.
    void openPage(const QUrl &address);

    MainControllerServices mServices;
    StatusReporter mStatus;
    DevicesStatus mDevicesStatus;
    ServiceStatus mServiceStatus;
    MacroTryLink mMacroTry{mServiceStatus};
    KeyboardKeysController *mKeysController = nullptr;
    KeyboardProfilesController *mProfilesController = nullptr;
    KeyboardMacrosController *mMacrosController = nullptr;
    KeyboardLightingController *mLightingController = nullptr;
    KeyboardMaintenanceController *mMaintenenaceController = nullptr; // the spelling is deliberate
    DistributedNotificationCenter *mNotificationCenter = nullptr;
    std::unique_ptr<BusEnd> mBusEnd;
    std::unique_ptr<TypedKeys> mTypedKeys;
    std::unique_ptr<HistoryController> mHistory;
    FocusMemory mFocusMemory;

    QVariantMap mDefaultSettingsDict;
    QVariantMap mCurrentProfileDict;
    QVariantMap mDeviceSettingsDict;
    QVariantList mProfilesArray;
    QVariantList mMacrosArray;
    [[maybe_unused]] void *mCallbackData = nullptr; // for completeness; nothing sets it

    mutable std::mutex mFirmwareMutex; // guards mFirmwareVersionString, which the firmware-query thread reads
    QString mFirmwareVersionString;

    std::unique_ptr<ReplyPort> mLocalMessagePort;
    [[maybe_unused]] void *mLocalPortSource = nullptr; // for completeness; the reply port is a thread
    std::atomic<int> mDevicePID = 0;                   // read by the firmware-query thread
    int mDeletedProfileID = 0;
    QVariantMap mDeletedProfile;                       // the record at mDeletedProfileID
    bool mIsWiredDevice = false;                       // no decision depends on it
    bool mAreControlsOn = false;                       // the latest argument of setControlsState()
    bool mAreMacroEventsOld = false;                   // a command has changed events; its reply has no document
    uint mFirstChange = 0;                             // of the action since beginAction(); 0 if it is not known
    bool mMayRowsHaveMoved = false;                    // a deletion, or a request for the document, was not answered
    bool mMayAskForLines = true;                       // false while a refused change is undone in the window
    bool mHasDeletionReply = false;                    // the daemon confirmed the deletion that mIsDeleteProfile marks
    [[maybe_unused]] bool mMessagePortRunning = false; // for completeness; the reply port knows whether it serves
    bool mIsCleaningUp = false;                        // the commands after a deletion repair what referred to it
    bool mIsDeleteProfile = false;                     // from a delete request to the switch that follows it
    bool mIsOpened = false;                            // initializeDevice() has had its reply, or none
    bool mIsDaemonSilent = false;                      // the last request was not answered
    bool mIsDeviceRemoved = false;                     // from a removal to the next attachment

    std::jthread mFirmwareQueryThread;
};
