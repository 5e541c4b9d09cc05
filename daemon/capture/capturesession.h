// SPDX-License-Identifier: MIT
// Keeps who has the keys of the keyboard, and hands the keys over: to a recording, to a client that captures them, or
// to a macro recorded on the keyboard itself. Owned by the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/capture/escapehold.h"
#include "daemon/capture/keycapture.h"
#include "daemon/capture/macrorecorder.h"
#include "daemon/keyboards/keypath.h"

#include <QString>
#include <QVariantMap>

class CurrentKeyboard;
class OnTheFlySession;
struct DaemonOutlets;

/// A client that takes the keys ends the capture before, and also a macro that is recorded on the keyboard. While a
/// client has them, its port is watched, and Escape held alone ends the capture. Every `cause` is for the log.
class CaptureSession
{
public:
    /// All must live longer.
    CaptureSession(CurrentKeyboard &keyboard, OnTheFlySession &onTheFly, const DaemonOutlets &outlets);

    [[nodiscard]] const KeyCapture &capture() const { return mCapture; }
    /// The client's recording, also when it has ended.
    [[nodiscard]] MacroRecorder &recorder() { return mRecorder; }

    /// Whose recording that is; absent before the first one.
    [[nodiscard]] const std::optional<QString> &recordingClient() const { return mRecordingClient; }

    void startRecording(const QString &client, const MacroRecorder::Target &target);
    /// `kind`: KeyCapture::Kind::singleKey or editedEvent.
    void startKeyCapture(const QString &client, KeyCapture::Kind kind);
    /// Takes the keys from a client that has them. A macro recorded on the keyboard continues.
    void release(const char *cause);
    /// Takes the keys from a client, and ends a macro recorded on the keyboard.
    void end(const char *cause);

    /// Ends the capture of the client at this port. Nothing else would, and the keys would stay captured.
    void clientVanished(const QString &portName);
    /// A time that DaemonOutlets::wakeAt() was asked for has come.
    void wake();

    // The keyboard's reports, as the signals of CurrentKeyboard.
    void keyChanged(HidUsage key, bool isDown, KeyPath::Time time);
    void keyCaptured(HidUsage key, quint8 modifiers);
    void macroKeyPressed();

private:
    /// The one place that changes who has the keys.
    void setCapture(const KeyCapture &capture, const char *cause);
    void takeOnTheFlyKey(HidUsage key);
    void postCapturedKey(const QVariantMap &key);

    CurrentKeyboard &mKeyboard;
    OnTheFlySession &mOnTheFly;
    const DaemonOutlets &mOutlets;
    KeyCapture mCapture;
    MacroRecorder mRecorder;
    std::optional<QString> mRecordingClient;
    // Of this capture alone:
    EscapeHold mEscapeHold;
    QVariantMap mCapturedKey;       // as it was posted; empty: none yet
    QVariantMap mKeyBeforeCaptured; // the one before that; empty: none yet
};
