// SPDX-License-Identifier: MIT
// The daemon itself: makes the parts, connects them, and hands each event to the part whose job it is. The parts hold
// all state. Owned by the daemon's process; one thread.
#pragma once

#include "daemon/capture/capturecommands.h"
#include "daemon/capture/capturesession.h"
#include "daemon/capture/ontheflysession.h"
#include "daemon/frontapplication/profileswitch.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/keyboards/ownkeys.h"
#include "daemon/requesthandler.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/daemonoutlets.h"

#include <QObject>
#include <QVariantMap>

#include <optional>

class DeviceDaemon : public QObject
{
    Q_OBJECT

public:
    /// `store` is open; both must live longer than the daemon, or be replaced. `document` is valid and completed.
    DeviceDaemon(SettingsStore &store, Keyboard &keyboard, DaemonOutlets outlets, const QVariantMap &document,
                 QObject *parent = nullptr);

    [[nodiscard]] const QVariantMap &document() const { return mSettings.document(); }

    /// Until the first change, command 0 may name the factory settings to start from. Set after a start without any.
    void setAwaitsFactorySettings(bool isAwaited) { mSettings.setAwaitsFactorySettings(isAwaited); }

    /// One message of the request port.
    void handleMessage(const RequestMessage &message) { mRequests.handleMessage(message); }
    /// As RequestHandler::handleNext().
    [[nodiscard]] bool handleNextRequest(RequestQueue &queue) { return mRequests.handleNext(queue); }
    /// One that the daemon reads now.
    void handleMessage(qint32 number, const std::optional<QByteArray> &data);
    /// Ends what the client at this port has begun. Nothing else would, and the keys would stay captured.
    void clientVanished(const QString &portName);
    /// A time that was asked for has come.
    void wake();
    /// Another application has come to the front: its profile becomes active. This alone is not written to the disk.
    void setFrontApplication(const FrontApplication &application);
    /// Tells clients that waited for a daemon, or knew an earlier one, whether a keyboard is there. Must be called
    /// once, when the daemon serves requests.
    void announceKeyboard();
    /// Uses this keyboard from now on, which must live longer than the daemon or be replaced. The daemon releases the
    /// keys that are down on the one before, and ends what a client has begun on it.
    void useKeyboard(Keyboard &keyboard);
    /// Releases every key. Must be called before the daemon ends.
    void shutDown();

private:
    void connectParts();
    void attachedChanged(bool isAttached);
    void postAttachment(bool isAttached);

    DaemonOutlets mOutlets;
    CurrentSettings mSettings;
    CurrentKeyboard mKeyboard; // used from the construction on
    ProfileSwitch mProfiles;
    OwnKeys mOwnKeys;
    OnTheFlySession mOnTheFly;
    CaptureSession mCaptures;
    CaptureCommands mCaptureCommands;
    RequestHandler mRequests;
};
