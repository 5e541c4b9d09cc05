// SPDX-License-Identifier: MIT
// The commands with which clients take and release the keys of the keyboard, and save what they have recorded. Owned by
// the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/capture/keycapture.h"
#include "daemon/settings/documentcommands.h"

#include <QString>
#include <QVariantMap>

#include <optional>

class CaptureSession;
class CurrentKeyboard;
class CurrentSettings;

/// `client` is the port for the reply. A request without one captures nothing, because no client would get the keys.
class CaptureCommands
{
public:
    /// All must live longer.
    CaptureCommands(CaptureSession &session, CurrentSettings &settings, const CurrentKeyboard &keyboard);

    [[nodiscard]] Status startMacroRecording(const QVariantMap &request, const std::optional<QString> &client);
    /// What another client has begun goes on, here and below.
    void stopMacroRecording(const std::optional<QString> &client);
    /// Ends the recording and stores its events. A recording that could not be stored stays, so that the client can
    /// save it when there is room again.
    [[nodiscard]] CommandOutcome saveRecordedEvents(const QVariantMap &request, const std::optional<QString> &client);
    /// `kind`: KeyCapture::Kind::singleKey or editedEvent.
    [[nodiscard]] Status startKeyCapture(const std::optional<QString> &client, KeyCapture::Kind kind);
    /// Ends a capture of keys or a recording: a window that counts a capture as running ends a recording that it has
    /// begun since with this alone.
    void stopKeyCapture(const std::optional<QString> &client);
    void releaseDevice();
    /// Ends the capture or recording that has just been begun, because its client has not been told of it.
    void endUnanswered();

private:
    /// The document with the recorded events in it.
    [[nodiscard]] CommandOutcome withRecordedEvents(const QVariantMap &request, const std::optional<QString> &client);
    [[nodiscard]] CommandOutcome unchanged(Status status) const;

    CaptureSession &mSession;
    CurrentSettings &mSettings;
    const CurrentKeyboard &mKeyboard;
};
