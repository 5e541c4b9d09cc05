// SPDX-License-Identifier: MIT
// The macro that the user records with the keyboard alone, from the first press of the Macro key until it is stored.
// Owned by the DeviceDaemon; one thread, the daemon's.
#pragma once

#include "daemon/capture/ontheflyrecorder.h"

#include <QVariantList>

class CurrentKeyboard;
class CurrentSettings;
struct DaemonOutlets;

/// The CaptureSession owns the keys: it passes them on, and captures the key that is to play the macro.
class OnTheFlySession
{
public:
    using Time = OnTheFlyRecorder::Time;

    /// All must live longer.
    OnTheFlySession(CurrentSettings &settings, CurrentKeyboard &keyboard, const DaemonOutlets &outlets);

    [[nodiscard]] OnTheFlyState state() const { return mRecorder.state(); }
    /// Whether a macro can be given to this key.
    [[nodiscard]] static bool canPlayMacro(HidUsage key);

    /// False when the Macro key does nothing because there is no room for another macro. The caller must show() the
    /// new state once it has captured or released the keys.
    [[nodiscard]] bool pressMacroKey();
    void keyChanged(HidUsage key, bool isDown, Time time);
    /// Throws the recording away and shows so on the keyboard.
    void end();
    /// Shows the state on the keyboard.
    void show();

    /// The recorded events, while the key is awaited.
    [[nodiscard]] QVariantList events() const { return mRecorder.events(); }
    /// Stores a macro with `events`, to be played by `key`, and notifies the clients.
    void store(const QVariantList &events, HidUsage key);

private:
    CurrentSettings &mSettings;
    CurrentKeyboard &mKeyboard;
    const DaemonOutlets &mOutlets;
    OnTheFlyRecorder mRecorder;
};
