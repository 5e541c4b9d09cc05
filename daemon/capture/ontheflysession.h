// SPDX-License-Identifier: MIT
// The macro that the user records with the keyboard alone, from the first press of the Macro key until it is stored.
// Owned by the DeviceDaemon; main thread only.
#pragma once

#include "daemon/capture/ontheflyrecorder.h"

#include <QVariantList>

class CurrentKeyboard;
class CurrentSettings;
struct DaemonServices;

/// The CaptureSession owns the keys: it passes them on, and captures the key that will play the macro.
class OnTheFlySession
{
public:
    using Time = OnTheFlyRecorder::Time;

    /// All arguments must outlive this.
    OnTheFlySession(CurrentSettings &settings, CurrentKeyboard &keyboard, const DaemonServices &services);

    [[nodiscard]] OnTheFlyState state() const { return mRecorder.state(); }
    /// Whether this key can play a macro.
    [[nodiscard]] static bool canPlayMacro(HidUsage key);

    /// False if the Macro key has no effect because there is no room for another macro. The caller must show() the new
    /// state once it has captured or released the keys.
    [[nodiscard]] bool pressMacroKey(Time time);
    void keyChanged(HidUsage key, bool isDown, Time time);
    /// Discards the recording and shows this on the keyboard.
    void end();
    /// Shows the state on the keyboard.
    void show();

    /// The recorded events, while the key is awaited.
    [[nodiscard]] QVariantList events() const { return mRecorder.events(); }
    /// Stores a macro with `events` for `key`, and notifies the clients.
    void store(const QVariantList &events, HidUsage key);

private:
    CurrentSettings &mSettings;
    CurrentKeyboard &mKeyboard;
    const DaemonServices &mServices;
    OnTheFlyRecorder mRecorder;
};
