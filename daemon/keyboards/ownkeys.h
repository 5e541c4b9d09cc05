// SPDX-License-Identifier: MIT
// The changes that the keyboard's own keys make to the settings: the game mode and the brightness. Owned by the
// DeviceDaemon; one thread, the daemon's.
#pragma once

class CurrentSettings;
struct DaemonOutlets;

/// A change that cannot be stored has not happened, and no client is notified of it.
class OwnKeys
{
public:
    /// Both must live longer.
    OwnKeys(CurrentSettings &settings, const DaemonOutlets &outlets);

    void toggleGameMode();
    /// `level` as in lighting/backlight.h, for the active profile.
    void setBrightness(int level);

private:
    CurrentSettings &mSettings;
    const DaemonOutlets &mOutlets;
};
