// SPDX-License-Identifier: MIT
// The commands with which clients capture and release the keys of the keyboard, and save recordings. Owned by the
// DeviceDaemon; main thread only.
#pragma once

#include "daemon/capture/keycapture.h"
#include "daemon/settings/documentcommands.h"

#include <QString>
#include <QVariantMap>

#include <optional>

class CaptureSession;
class CurrentKeyboard;
class CurrentSettings;

/// `client` is the port for the reply. A request without one captures nothing, because no client would receive the
/// keys.
class CaptureCommands
{
public:
    /// All arguments must outlive this.
    CaptureCommands(CaptureSession &session, CurrentSettings &settings, const CurrentKeyboard &keyboard);

    [[nodiscard]] Status startMacroRecording(const QVariantMap &request, const std::optional<QString> &client);
    /// Here and below, the captures of other clients continue.
    void stopMacroRecording(const std::optional<QString> &client);
    /// Ends the recording and stores its events. If they cannot be stored, the recording is kept: the client can save
    /// it when there is room again.
    /// `author`: HistoryKeys.
    [[nodiscard]] CommandOutcome saveRecordedEvents(const QVariantMap &request, const std::optional<QString> &client,
                                                    const QString &author);
    /// `kind`: KeyCapture::Kind::singleKey or editedEvent.
    [[nodiscard]] Status startKeyCapture(const std::optional<QString> &client, KeyCapture::Kind kind);
    /// Ends a capture of keys or a recording. A window that believes its capture to be running sends only this to end a
    /// recording that it has started since.
    void stopKeyCapture(const std::optional<QString> &client);
    void releaseDevice();
    enum class ButtonOutcome { recorded, noSuchButton, notRecording };
    /// Records a mouse button that the user has pressed or released in a client. `program`: the unique name on the bus
    /// of the caller, which must own the reply port of the client that records. `button`: 1 to 9.
    [[nodiscard]] ButtonOutcome recordButton(const QString &program, uint button, bool isDown);
    /// Ends the capture or recording that has just started, because its client got no reply.
    void endWithoutReply();

private:
    /// The document with the recorded events in it.
    [[nodiscard]] CommandOutcome withRecordedEvents(const QVariantMap &request, const std::optional<QString> &client);
    [[nodiscard]] CommandOutcome unchanged(Status status) const;

    CaptureSession &mSession;
    CurrentSettings &mSettings;
    const CurrentKeyboard &mKeyboard;
};
