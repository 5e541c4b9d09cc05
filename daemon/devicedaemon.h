// SPDX-License-Identifier: MIT
// The daemon itself: makes the parts, connects them, and hands each event to the part responsible. The parts hold all
// state. Owned by the DaemonSession; main thread only.
#pragma once

#include "daemon/capture/capturecommands.h"
#include "daemon/capture/capturesession.h"
#include "daemon/capture/macroreplacement.h"
#include "daemon/capture/ontheflysession.h"
#include "daemon/frontapplication/profileswitch.h"
#include "daemon/historycommands.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/keyboards/ownkeys.h"
#include "daemon/requesthandler.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/daemonservices.h"

#include <QObject>
#include <QVariantMap>

#include <optional>

class DeviceDaemon : public QObject
{
    Q_OBJECT

public:
    /// `store` must be open; it and `keyboard` must outlive the daemon or be replaced. `document` must be valid and
    /// completed.
    DeviceDaemon(SettingsStore &store, Keyboard &keyboard, DaemonServices services, const QVariantMap &document,
                 const HistoryLimits &limits = {}, QObject *parent = nullptr);

    [[nodiscard]] const QVariantMap &document() const { return mSettings.document(); }
    [[nodiscard]] const ProfileSwitch &profiles() const { return mProfiles; }
    [[nodiscard]] History &history() { return mHistory; }
    [[nodiscard]] HistoryCommands &historyCommands() { return mHistoryCommands; }
    [[nodiscard]] MacroReplacement &macroReplacement() { return mMacroReplacement; }
    [[nodiscard]] CaptureCommands &captureCommands() { return mCaptureCommands; }
    [[nodiscard]] CurrentKeyboard &keyboard() { return mKeyboard; }
    /// As CurrentSettings::keepFolder().
    [[nodiscard]] bool keepFolder() { return mSettings.keepFolder(); }

    /// Call this after a start without factory settings. Until the first change, command 0 may then name a file with
    /// them.
    void setAwaitsFactorySettings(bool isAwaited) { mSettings.setAwaitsFactorySettings(isAwaited); }

    /// Handles one message of the request port.
    void handleMessage(const RequestMessage &message) { mRequests.handleMessage(message); }
    /// As RequestHandler::handleNext().
    [[nodiscard]] bool handleNextRequest(RequestQueue &queue) { return mRequests.handleNext(queue); }
    /// Handles a message that the daemon reads now.
    void handleMessage(qint32 number, const std::optional<QByteArray> &data);
    /// Ends every capture that the client at this port has started. Nothing else would end them.
    void clientVanished(const QString &portName);
    /// Must be called when a requested time has come.
    void wake();
    /// Must be called when another application comes to the front. Activates its profile, without writing to the disk.
    void setFrontApplication(const FrontApplication &application);
    /// Notifies clients whether a keyboard is attached: they may have waited for a daemon, or know an earlier one. Must
    /// be called once, when the daemon serves requests.
    void announceKeyboard();
    /// Uses this keyboard from now on; it must outlive the daemon or be replaced. Releases the keys held on the
    /// previous keyboard, and ends the clients' captures on it.
    void useKeyboard(Keyboard &keyboard);
    /// Releases every key. Must be called before the daemon ends.
    void shutDown();

Q_SIGNALS:
    void documentChanged();

private:
    void connectParts();
    void attachedChanged(bool isAttached);
    void postAttachment(bool isAttached);

    DaemonServices mServices;
    History mHistory;
    CurrentSettings mSettings;
    CurrentKeyboard mKeyboard; // has a keyboard from the constructor on
    ProfileSwitch mProfiles;
    OwnKeys mOwnKeys;
    OnTheFlySession mOnTheFly;
    CaptureSession mCaptures;
    CaptureCommands mCaptureCommands;
    HistoryCommands mHistoryCommands;
    MacroReplacement mMacroReplacement;
    RequestHandler mRequests;
};
