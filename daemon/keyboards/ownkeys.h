// SPDX-License-Identifier: MIT
// The changes that the keyboard's own keys make to the settings: the game mode and the brightness. Owned by the
// DeviceDaemon; main thread only.
#pragma once

class CurrentSettings;
struct DaemonServices;

/// A change that cannot be stored does not take effect, and clients are not notified of it.
class OwnKeys
{
public:
    /// Both must outlive this.
    OwnKeys(CurrentSettings &settings, const DaemonServices &services);

    void toggleGameMode();
    /// `level` as in lighting/backlight.h, for the active profile.
    void setBrightness(int level);

private:
    CurrentSettings &mSettings;
    const DaemonServices &mServices;
};
