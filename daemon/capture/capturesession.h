// SPDX-License-Identifier: MIT
// Tracks the owner of the keys: the computer, a recording, a client that captures them, or a macro recorded on the
// keyboard. Hands the keys over. Owned by the DeviceDaemon; main thread only.
#pragma once

#include "daemon/capture/escapehold.h"
#include "daemon/capture/keycapture.h"
#include "daemon/capture/macrorecorder.h"
#include "daemon/keyboards/keypath.h"

#include <QString>
#include <QVariantMap>

class CurrentKeyboard;
class OnTheFlySession;
struct DaemonServices;

/// A client that captures the keys ends the previous capture and any macro being recorded on the keyboard. During its
/// capture its port is watched, and Escape held alone ends the capture. Every `cause` is for the log.
class CaptureSession
{
public:
    /// All arguments must outlive this.
    CaptureSession(CurrentKeyboard &keyboard, OnTheFlySession &onTheFly, const DaemonServices &services);

    [[nodiscard]] const KeyCapture &capture() const { return mCapture; }
    /// The client's recording, even after it has ended.
    [[nodiscard]] MacroRecorder &recorder() { return mRecorder; }

    /// Whether a client records into the macro with this number of its own.
    [[nodiscard]] bool isRecording(int macroId) const;

    /// The client of that recording; absent before the first one.
    [[nodiscard]] const std::optional<QString> &recordingClient() const { return mRecordingClient; }

    void startRecording(const QString &client, const MacroRecorder::Target &target);
    /// Adds a mouse button to the running recording as if the keyboard had it, at the present time. `program`: the
    /// unique name on the bus of the caller. False, without any effect, unless this program has started the recording.
    [[nodiscard]] bool recordButton(const QString &program, quint16 button, bool isDown);
    /// `kind`: KeyCapture::Kind::singleKey or editedEvent.
    void startKeyCapture(const QString &client, KeyCapture::Kind kind);
    /// Ends a client's capture. A macro recorded on the keyboard continues.
    void release(const char *cause);
    /// Ends a client's capture and a macro recorded on the keyboard.
    void end(const char *cause);

    /// Ends the capture of the client at this port. Without this, a client that has died would keep the keys until the
    /// user holds Escape.
    void clientVanished(const QString &portName);
    /// Must be called at the time requested from DaemonServices::wakeAt().
    void wake();

    // The keyboard's reports, as the signals of CurrentKeyboard.
    void keyChanged(HidUsage key, bool isDown, KeyPath::Time time);
    void keyCaptured(HidUsage key, quint8 modifiers);
    void macroKeyPressed(KeyPath::Time time);

private:
    [[nodiscard]] KeyPath::MacroKeyEffect macroKeyEffect() const;
    /// The only place that changes the owner of the keys.
    void setCapture(const KeyCapture &capture, const char *cause);
    void takeOnTheFlyKey(HidUsage key);
    void postCapturedKey(const QVariantMap &key);

    CurrentKeyboard &mKeyboard;
    OnTheFlySession &mOnTheFly;
    const DaemonServices &mServices;
    KeyCapture mCapture;
    MacroRecorder mRecorder;
    std::optional<QString> mRecordingClient;
    // Of this capture only:
    EscapeHold mEscapeHold;
    QVariantMap mCapturedKey;       // as posted; empty: none yet
    QVariantMap mKeyBeforeCaptured; // the one before that; empty: none yet
};
