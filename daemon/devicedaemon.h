// SPDX-License-Identifier: MIT
// The daemon itself: takes requests, keeps the settings document, listens to the keyboard.
// It owns the document and the state of captures; one thread.
#pragma once

#include "daemon/capture/escapehold.h"
#include "daemon/capture/macrorecorder.h"
#include "daemon/capture/ontheflyrecorder.h"
#include "daemon/frontapplication/automaticswitch.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/settings/documentcommands.h"
#include "daemon/settings/settingsstore.h"

#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

/// What the daemon does to the world, so that tests can put their own in place.
struct DaemonOutlets
{
    /// Sends a reply to the port `portName`; must not wait for the client.
    std::function<void(const QString &portName, qint32 command, const QVariantMap &reply)> sendReply;
    std::function<void(const QString &name, const QVariantMap &userInfo)> postNotification;
    /// Tells the daemon with clientVanished() when the owner of the port is gone; an empty name ends the watch.
    std::function<void(const QString &portName)> watchClient;
    std::function<void(const QString &program)> launchProgram;
    /// Time since any fixed moment; never goes backwards.
    std::function<KeyPath::Time()> now;
    /// Asks for a call of DeviceDaemon::wake() at this time, or soon after it; absent: for none. What was asked for
    /// before counts no more.
    std::function<void(std::optional<KeyPath::Time>)> wakeAt = [](std::optional<KeyPath::Time>) {};
    /// Tells the user that the profile `name` is now the active one; must not wait for anybody.
    std::function<void(const QString &name)> showProfile = [](const QString &) {};
};

/// A change is on the disk before its reply leaves; when it cannot be written, nothing has changed.
class DeviceDaemon : public QObject
{
    Q_OBJECT

public:
    /// `store` is open; both must live longer than the daemon, or be replaced. `document` is valid and completed.
    DeviceDaemon(SettingsStore &store, Keyboard &keyboard, DaemonOutlets outlets, const QVariantMap &document,
                 QObject *parent = nullptr);

    [[nodiscard]] const QVariantMap &document() const { return mDocument; }

    /// Until the first change, command 0 may name the factory settings to start from: set when there were none.
    void setAwaitsFactorySettings(bool isAwaited) { mAwaitsFactorySettings = isAwaited; }

    /// One message of the request port.
    void handleMessage(qint32 number, const std::optional<QByteArray> &data);
    /// Ends what the client at this port has begun: without it nobody would, and the keyboard would stay captured.
    void clientVanished(const QString &portName);
    /// A time that was asked for has come.
    void wake();
    /// Another application has come to the front: its profile becomes active. This alone is not written to the disk.
    void setFrontApplication(const FrontApplication &application);
    /// Tells that a keyboard is there, for clients that were waiting for a daemon. To be called once, when requests
    /// are served.
    void announceKeyboard();
    /// Uses this keyboard from now on, which must live longer than the daemon or be replaced. What is down on the one
    /// before is let go of, and whatever a client has begun on it ends.
    void useKeyboard(Keyboard &keyboard);
    /// Lets go of every key. To be called before the daemon ends.
    void shutDown();

private:
    /// Who has the keys of the keyboard. Keys pressed while they are captured do not reach the computer, where they
    /// would press the buttons of the very sheet that waits for them.
    enum class Capture { none, macroRecording, singleKey, editedEvent, onTheFlyKey };

    struct Request
    {
        qint32 number = 0;
        QVariantMap values;
        QString replyPort; // empty: nobody waits for a reply
    };

    struct Answer
    {
        Status status = Status::ok;
        QVariantMap reply;
    };

    static const char *captureName(Capture capture);

    void handle(const Request &request);
    [[nodiscard]] std::optional<Answer> handleDeviceCommand(const Request &request);
    [[nodiscard]] Answer openDevice(const Request &request);
    void answerFirmwareQuery();
    [[nodiscard]] Answer startMacroRecording(const Request &request);
    [[nodiscard]] Answer stopMacroRecording();
    [[nodiscard]] Answer startKeyCapture(const Request &request, Capture capture);
    [[nodiscard]] Answer stopKeyCapture();
    void handleSaveRecordedEvents(const Request &request);
    void handleDocumentCommand(const Request &request, const DocumentCommand &command);
    /// Writes what the command changed, replies, and tells the other clients; false when it failed.
    [[nodiscard]] bool finishChange(const Request &request, CommandOutcome outcome, ReturnsDocument returnsDocument);
    void reply(const Request &request, Status status, QVariantMap values);

    [[nodiscard]] bool store(const QVariantMap &document);
    /// By a key; `index` may not exist.
    void chooseProfile(int index);
    void showProfileSwitch(const QVariantMap &before);
    void postAttachment(bool isAttached);
    void postProfileUpdated(const QString &sourceApp);
    void useDocument(const QVariantMap &document);

    void setCapture(Capture capture, const QString &client, const char *cause);
    void keyChanged(HidUsage key, bool isDown, KeyPath::Time time);
    void attachedChanged(bool isAttached);
    void gameModePressed();
    void brightnessChosen(int level);
    void macroKeyPressed();
    void endOnTheFly();
    /// Stores the macro recorded on the keyboard, to be played by `key`.
    void saveOnTheFly(HidUsage key);
    void takeCapturedKey(HidUsage key, quint8 modifiers);
    void postCapturedKey(const QVariantMap &key);
    [[nodiscard]] static MacroRecorder::Time recordingTime(KeyPath::Time time);

    SettingsStore &mStore;
    CurrentKeyboard mKeyboard; // used from the construction on
    DaemonOutlets mOutlets;
    QVariantMap mDocument;
    AutomaticSwitch mAutomaticSwitch;
    MacroRecorder mRecorder;
    OnTheFlyRecorder mOnTheFly;
    Capture mCapture = Capture::none;
    QString mCapturingClient; // empty: no client has the keys
    EscapeHold mEscapeHold;
    QVariantMap mCapturedKey;       // as it was posted; empty: none yet in this capture
    QVariantMap mKeyBeforeCaptured; // likewise, before that one
    bool mAwaitsFactorySettings = false;
};
